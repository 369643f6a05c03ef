<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_GB" sourcelanguage="en_GB">
<context>
    <name>SendPreview</name>
    <message numerus="yes">
        <source>%n name(s) change</source>
        <translation>
            <numerusform>%n name changes</numerusform>
            <numerusform>%n names change</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n comment(s) are cut or lost</source>
        <translation>
            <numerusform>%n comment is cut or lost</numerusform>
            <numerusform>%n comments are cut or lost</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n symbol(s) are lost</source>
        <translation>
            <numerusform>%n symbol is lost</numerusform>
            <numerusform>%n symbols are lost</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n altitude(s) are lost</source>
        <translation>
            <numerusform>%n altitude is lost</numerusform>
            <numerusform>%n altitudes are lost</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n date(s) are lost</source>
        <translation>
            <numerusform>%n date is lost</numerusform>
            <numerusform>%n dates are lost</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n depth(s), temperatures or alarms are lost</source>
        <translation>
            <numerusform>%n depth, temperature or alarm is lost</numerusform>
            <numerusform>%n depths, temperatures or alarms are lost</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>marlune::desktop::MainWindow</name>
    <message numerus="yes">
        <source>Saved as %1, without %n that have no position on earth</source>
        <translation>
            <numerusform>Saved as %1, without %n that has no position on earth</numerusform>
            <numerusform>Saved as %1, without %n that have no position on earth</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>marlune::desktop::SendPreview</name>
    <message numerus="yes">
        <source>%n cannot be sent, nor what comes behind</source>
        <translation>
            <numerusform>%n cannot be sent, nor what comes behind</numerusform>
            <numerusform>%n cannot be sent, nor what comes behind</numerusform>
        </translation>
    </message>
</context>
</TS>
