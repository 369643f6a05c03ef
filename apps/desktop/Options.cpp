#include "desktop/Options.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

namespace marlune::desktop {
namespace {

QString optionText(const char* text) {
    return QCoreApplication::translate("Options", text);
}

words::Language languageOf(const QString& name) {
    return name.startsWith(QLatin1String("fr"), Qt::CaseInsensitive) ? words::Language::french
                                                                     : words::Language::english;
}

// Texts that are not there stay English.
void install(QCoreApplication& application, const QString& file, const QString& folder) {
    auto* translator = new QTranslator(&application);
    if (translator->load(file, folder)) {
        QCoreApplication::installTranslator(translator);
    }
}

}  // namespace

Options readOptions(const QCoreApplication& application) {
    const QCommandLineOption port(
        QStringLiteral("port"),
        optionText(QT_TRANSLATE_NOOP(
            "Options", "Connect to this receiver: /dev/ttyUSB0, usb, virtual:map162.")),
        QStringLiteral("PORT"));
    const QCommandLineOption mark(
        QStringLiteral("mark"),
        optionText(QT_TRANSLATE_NOOP("Options", "Its family: GRM, GRM_USB, MGN or MLR.")),
        QStringLiteral("MARK"));
    const QCommandLineOption drive(
        QStringLiteral("drive"),
        optionText(QT_TRANSLATE_NOOP("Options", "A folder that counts as a mounted drive.")),
        QStringLiteral("FOLDER"));
    const QCommandLineOption lang(QStringLiteral("lang"),
                                  optionText(QT_TRANSLATE_NOOP("Options", "Speak en or fr.")),
                                  QStringLiteral("LANG"));
    QCommandLineParser parser;
    parser.setApplicationDescription(optionText(QT_TRANSLATE_NOOP(
        "Options", "Exchanges waypoints, routes and tracks with GPS receivers.")));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({port, mark, drive, lang});
    parser.addPositionalArgument(QStringLiteral("file"),
                                 optionText(QT_TRANSLATE_NOOP("Options", "A file to open.")),
                                 QStringLiteral("[file]"));
    parser.process(application);

    Options options;
    options.port = parser.value(port);
    options.mark = parser.value(mark).toUpper();
    options.drives = parser.values(drive);
    options.file = parser.positionalArguments().value(0);
    options.language = parser.isSet(lang) ? languageOf(parser.value(lang)) : words::userLanguage();
    return options;
}

void speak(words::Language language, QCoreApplication& application) {
    const bool isFrench = language == words::Language::french;
    const QString code = isFrench ? QStringLiteral("fr") : QStringLiteral("en");
    // Numbers and dates as the texts.
    if (QLocale().language() != (isFrench ? QLocale::French : QLocale::English)) {
        QLocale::setDefault(QLocale(code));
    }
    install(application, QStringLiteral("qtbase_") + code,
            QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    install(application, QStringLiteral("marlune-desktop_") + code, QStringLiteral(":/i18n"));
}

}  // namespace marlune::desktop
