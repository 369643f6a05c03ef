// What the program is called with.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "words/Speech.h"

class QCoreApplication;

namespace marlune::desktop {

struct Options {
    QString port;        // to connect to at the start; empty for none
    QString mark;        // its family; empty when it is to be found out
    QStringList drives;  // folders that count as drives
    QString file;        // to open at the start
    words::Language language = words::Language::english;
};

// Ends the program for --help, --version and wrong usage.
Options readOptions(const QCoreApplication& application);

// Installs the program's texts in that language.
void speak(words::Language language, QCoreApplication& application);

}  // namespace marlune::desktop
