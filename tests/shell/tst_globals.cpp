// The text constants: their default texts without a translation, and a translation that
// replaces any of them by key.

#include <QTranslator>
#include <QtTest>

#include "shell/Globals.h"

namespace {

using Accessor = QString (*)();

struct Constant {
    const char* name;
    Accessor get;
    int bytes;  // UTF-8 bytes of the default text
    int lines;
};

#define CONSTANT(n, bytes, lines) {#n, &Globals::n, bytes, lines}
const Constant kConstants[] = {
    CONSTANT(kEditUndo, 4, 1),       CONSTANT(kEditRedo, 4, 1),        CONSTANT(kAppAbout, 14, 1),
    CONSTANT(kWinTitle, 7, 1),       CONSTANT(kEditQuit, 4, 1),        CONSTANT(kEditPaste, 5, 1),
    CONSTANT(kEditMenu, 4, 1),       CONSTANT(kEditCut, 3, 1),         CONSTANT(kEditCopy, 4, 1),
    CONSTANT(kEditClear, 5, 1),      CONSTANT(kAppName, 7, 1),         CONSTANT(kAboutText, 136, 2),
    CONSTANT(kHowToClose, 40, 1),    CONSTANT(kUsageText, 2219, 16),   CONSTANT(kBaseGroupCap, 15, 1),
    CONSTANT(kBaseKind1, 18, 1),     CONSTANT(kBaseKind2, 22, 1),      CONSTANT(kBaseKind3, 28, 1),
    CONSTANT(kBaseKind4, 18, 1),     CONSTANT(kBaseKind5, 22, 1),      CONSTANT(kExecuteBtnCap, 19, 3),
    CONSTANT(kAddGroupCap, 14, 1),   CONSTANT(kClearBtnCap, 5, 1),     CONSTANT(kAddValueCheck, 27, 1),
    CONSTANT(kTxY, 1, 1),            CONSTANT(kTxM, 1, 1),             CONSTANT(kTxD, 0, 1),
    CONSTANT(kTxHour, 1, 1),         CONSTANT(kTxMin, 1, 1),           CONSTANT(kTxSec, 0, 1),
    CONSTANT(kAimGroupCap, 67, 1),   CONSTANT(kListHeaderInitValue, 88, 1), CONSTANT(kListInitValue, 96, 1),
    CONSTANT(kOnlyPictCheck, 68, 1),
};
#undef CONSTANT

// A localised table that holds a text for some keys only.
class Table : public QTranslator {
public:
    QHash<QString, QString> texts;
    QString translate(const char*, const char* sourceText, const char*, int) const override
    {
        return texts.value(QString::fromUtf8(sourceText));
    }
    bool isEmpty() const override { return texts.isEmpty(); }
};

const Constant* find(const QString& name)
{
    for (const Constant& c : kConstants)
        if (name == QLatin1String(c.name))
            return &c;
    return nullptr;
}

}  // namespace

class TestGlobals : public QObject {
    Q_OBJECT
private slots:
    void defaults_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(kConstants)); ++i)
            QTest::newRow(kConstants[i].name) << i;
    }
    void defaults()
    {
        QFETCH(int, index);
        const Constant& c = kConstants[index];
        const QString text = c.get();
        QCOMPARE(text.toUtf8().size(), c.bytes);
        QCOMPARE(text.count('\n') + 1, c.lines);
        QVERIFY(!text.contains('\r'));
    }

    void cells()
    {
        QCOMPARE(Globals::kListInitValue().split('\t'),
                 (QStringList{"File name", "File creat. date", "File mod. date", "Exif Img mod. date",
                              "Exif Shoot. date", "Exif Digitiz. date"}));
        QCOMPARE(Globals::kListHeaderInitValue().split('\t'),
                 (QStringList{"All data", "All this column", "All this column", "All this column",
                              "All this column", "All this column"}));
        QCOMPARE(Globals::kExecuteBtnCap().split('\n'), (QStringList{"Change", "Date", "Execute"}));
        QVERIFY(Globals::kTxD().isEmpty());
        QVERIFY(Globals::kTxSec().isEmpty());
    }

    // Each constant is looked up by its own key: a table can replace any one of them.
    void translated_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::newRow("app name apart from the title") << "kAppName" << "ベルカロ";
        QTest::newRow("title apart from the app name") << "kWinTitle" << "日付修正";
        QTest::newRow("separator without a default") << "kTxD" << "日";
        QTest::newRow("seconds without a default") << "kTxSec" << "秒";
        QTest::newRow("clear menu item apart from the button") << "kEditClear" << "消去";
        QTest::newRow("multi-line text") << "kUsageText" << "一行目\n二行目";
    }
    void translated()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        const Constant* c = find(name);
        QVERIFY(c);
        Table table;
        table.texts.insert("Globals." + name, text);
        QVERIFY(QCoreApplication::installTranslator(&table));
        QStringList others;
        for (const Constant& o : kConstants)
            if (o.get != c->get)
                others << o.get();
        const QString got = c->get();
        QCoreApplication::removeTranslator(&table);
        QCOMPARE(got, text);
        // All others keep their defaults.
        QStringList defaults;
        for (const Constant& o : kConstants)
            if (o.get != c->get)
                defaults << o.get();
        QCOMPARE(others, defaults);
        QCOMPARE(c->get().toUtf8().size(), c->bytes);
    }
};

QTEST_MAIN(TestGlobals)
#include "tst_globals.moc"
