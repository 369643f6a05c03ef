// The program in French: every text has its translation, and no two parts of the window the same
// key.
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QTableView>

#include "desktop/MainWindow.h"
#include "desktop/receivers/ReceiverPanel.h"
#include "desktop/records/RecordTabs.h"

namespace marlune::desktop {
namespace {

// The letter behind "&"; nothing without one.
QChar mnemonicOf(const QString& text) {
    static const QRegularExpression pattern(QStringLiteral("&([^& ])"));
    const auto match = pattern.match(text);
    return match.hasMatch() ? match.captured(1).at(0).toLower() : QChar();
}

// The texts with keys that are there at the same time as the record tabs.
QStringList textsWithKeys(const MainWindow& window) {
    QStringList texts;
    for (const QAction* each : window.menuBar()->actions()) {
        texts.append(each->text());
    }
    for (int i = 0; i < window.tabs().count(); ++i) {
        texts.append(window.tabs().tabText(i));
    }
    for (const auto* button : window.findChildren<QAbstractButton*>()) {
        texts.append(button->text());
    }
    for (const auto* label : window.findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) {
            texts.append(label->text());
        }
    }
    return texts;
}

void verifyKeys(const MainWindow& window) {
    QMap<QChar, QString> keys;
    for (const QString& text : textsWithKeys(window)) {
        const QChar key = mnemonicOf(text);
        if (!key.isNull()) {
            QVERIFY2(!keys.contains(key),
                     qPrintable(QStringLiteral("%1 and %2").arg(text, keys.value(key))));
            keys.insert(key, text);
        }
    }
    QVERIFY(keys.size() >= 12);
}

class TextsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void areAllTranslated();
    void haveKeysOfTheirOwnInEnglish();
    void areFrench();
    void haveKeysOfTheirOwnInFrench();
};

void TextsTest::areAllTranslated() {
    QFile file(
        QStringLiteral(MARLUNE_SOURCE_FOLDER "/apps/desktop/translations/marlune-desktop_fr.ts"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY(text.count(QStringLiteral("<message")) > 100);
    QVERIFY(!text.contains(QStringLiteral("type=\"unfinished\"")));
    QVERIFY(!text.contains(QStringLiteral("<translation></translation>")));
}

// By way of the resources, the translator and the whole names of the classes.
void TextsTest::areFrench() {
    speak(words::Language::french, *qApp);
    Options options;
    options.language = words::Language::french;
    const MainWindow window(options);
    QCOMPARE(window.actions().save->text(), QStringLiteral("&Enregistrer sous…"));
    QCOMPARE(window.receiverPanel().identityShown(), QStringLiteral("aucun"));
    QCOMPARE(window.tabs().tracks().model()->headerData(0, Qt::Horizontal).toString(),
             QStringLiteral("Nom"));
    QVERIFY(window.tabs().tabText(3) == QStringLiteral("&Suivi"));
}

void TextsTest::haveKeysOfTheirOwnInEnglish() {
    const MainWindow window{Options()};
    verifyKeys(window);
}

// Once the texts are French, they stay so.
void TextsTest::haveKeysOfTheirOwnInFrench() {
    haveKeysOfTheirOwnInEnglish();
}

}  // namespace
}  // namespace marlune::desktop

int main(int argc, char** argv) {
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("marlune-tests"));
    QCoreApplication::setApplicationName(QStringLiteral("texts"));
    marlune::desktop::TextsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TextsTest.moc"
