// The Japanese table: chosen by the desktop's language, complete, and absent elsewhere.

#include <QtTest>

#include "shell/Globals.h"
#include "shell/Translations.h"

namespace {

using Constant = QString (*)();
const Constant kAll[] = {
    Globals::kEditUndo, Globals::kEditRedo, Globals::kAppAbout, Globals::kWinTitle,
    Globals::kEditQuit, Globals::kEditPaste, Globals::kEditMenu, Globals::kEditCut,
    Globals::kEditCopy, Globals::kEditClear, Globals::kAppName, Globals::kAboutText,
    Globals::kHowToClose, Globals::kUsageText, Globals::kBaseGroupCap, Globals::kBaseKind1,
    Globals::kBaseKind2, Globals::kBaseKind3, Globals::kBaseKind4, Globals::kBaseKind5,
    Globals::kExecuteBtnCap, Globals::kAddGroupCap, Globals::kClearBtnCap, Globals::kAddValueCheck,
    Globals::kTxY, Globals::kTxM, Globals::kTxD, Globals::kTxHour,
    Globals::kTxMin, Globals::kTxSec, Globals::kAimGroupCap, Globals::kListHeaderInitValue,
    Globals::kListInitValue, Globals::kOnlyPictCheck,
};

QStringList texts()
{
    QStringList all;
    for (Constant c : kAll)
        all << c();
    return all;
}

void useLanguage(const QString& locale)
{
    QLocale::setDefault(QLocale(locale));
    installTranslations(*QCoreApplication::instance());
}

}  // namespace

class TestTranslations : public QObject {
    Q_OBJECT
    QStringList defaults;

private slots:
    void initTestCase()
    {
        defaults = texts();
        QCOMPARE(defaults.size(), 34);
    }
    void cleanup() { useLanguage(QStringLiteral("C")); }

    void language_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<bool>("japanese");
        QTest::newRow("Japanese in Japan") << "ja_JP" << true;
        QTest::newRow("Japanese alone") << "ja" << true;
        QTest::newRow("English") << "en_US" << false;
        QTest::newRow("German") << "de_DE" << false;
        QTest::newRow("Chinese, which shares the script") << "zh_CN" << false;
        QTest::newRow("C") << "C" << false;
    }
    void language()
    {
        QFETCH(QString, locale);
        QFETCH(bool, japanese);
        useLanguage(locale);
        const QStringList shown = texts();
        if (!japanese) {
            QCOMPARE(shown, defaults);
            return;
        }
        QCOMPARE(Globals::kEditMenu(), QStringLiteral("編集"));
        QCOMPARE(Globals::kTxD(), QStringLiteral("日"));
        // Every constant is in the table; only the program's name reads the same.
        for (int i = 0; i < shown.size(); ++i) {
            QVERIFY2(!shown[i].isEmpty() && !shown[i].startsWith(QStringLiteral("Globals.")), qPrintable(defaults[i]));
            QCOMPARE(shown[i] == defaults[i], defaults[i] == QStringLiteral("Velkaro"));
        }
    }

    // The usage text keeps its 16 lines and their numbering.
    void usageNumbering()
    {
        useLanguage(QStringLiteral("ja_JP"));
        const QStringList usage = Globals::kUsageText().split(QLatin1Char('\n'));
        const QStringList original = defaults[13].split(QLatin1Char('\n'));
        QCOMPARE(usage.size(), original.size());
        static const QRegularExpression number(QStringLiteral("^\\d+\\. "));
        for (int i = 0; i < usage.size(); ++i) {
            QCOMPARE(usage[i].isEmpty(), original[i].isEmpty());
            QCOMPARE(number.match(usage[i]).captured(), number.match(original[i]).captured());
        }
    }
};

QTEST_MAIN(TestTranslations)
#include "tst_translations.moc"
