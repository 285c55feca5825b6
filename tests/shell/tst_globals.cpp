// The text constants: their defaults without a translation, and a translation that
// replaces any one of them by its key.

#include <QTranslator>
#include <QtTest>

#include "shell/Globals.h"

namespace {

// A localised table that holds a text for one key only.
class Table : public QTranslator {
public:
    QString key, text;
    QString translate(const char*, const char* sourceText, const char*, int) const override
    {
        return key == QLatin1String(sourceText) ? text : QString();
    }
    bool isEmpty() const override { return false; }
};

}  // namespace

class TestGlobals : public QObject {
    Q_OBJECT
private slots:
    void defaults_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("bytes");
        QTest::addColumn<int>("lines");
        QTest::newRow("kUsageText") << Globals::kUsageText() << 2219 << 16;
        QTest::newRow("kAboutText") << Globals::kAboutText() << 136 << 2;
        QTest::newRow("kHowToClose") << Globals::kHowToClose() << 40 << 1;
        QTest::newRow("kExecuteBtnCap") << Globals::kExecuteBtnCap() << 19 << 3;
        QTest::newRow("kListInitValue") << Globals::kListInitValue() << 96 << 1;
        QTest::newRow("kTxD") << Globals::kTxD() << 0 << 1;
        QTest::newRow("kTxSec") << Globals::kTxSec() << 0 << 1;
    }
    void defaults()
    {
        QFETCH(QString, text);
        QTEST(int(text.toUtf8().size()), "bytes");
        QTEST(int(text.count('\n')) + 1, "lines");
    }

    // Each constant has its own key, even where two share a default text.
    void translated_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("appName");
        QTest::addColumn<QString>("winTitle");
        QTest::addColumn<QString>("txD");
        QTest::newRow("kAppName") << "Globals.kAppName" << "ベルカロ" << "Velkaro" << "";
        QTest::newRow("kWinTitle") << "Globals.kWinTitle" << "Velkaro" << "ベルカロ" << "";
        QTest::newRow("kTxD, without a default") << "Globals.kTxD" << "Velkaro" << "Velkaro" << "ベルカロ";
        QTest::newRow("a key of no constant") << "kAppName" << "Velkaro" << "Velkaro" << "";
    }
    void translated()
    {
        QFETCH(QString, key);
        Table table;
        table.key = key;
        table.text = QStringLiteral("ベルカロ");
        QVERIFY(QCoreApplication::installTranslator(&table));
        const QStringList got{Globals::kAppName(), Globals::kWinTitle(), Globals::kTxD()};
        QCoreApplication::removeTranslator(&table);
        QTEST(got[0], "appName");
        QTEST(got[1], "winTitle");
        QTEST(got[2], "txD");
    }
};

QTEST_MAIN(TestGlobals)
#include "tst_globals.moc"
