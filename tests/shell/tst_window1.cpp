// The main window as it is made: the controls' classes, parents, places, locks, states,
// fonts, texts and tab order, and where they stand when the window is resized.

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QtTest>

#include "platform/Listbox.h"
#include "platform/LockLayout.h"
#include "platform/OneShotTimer.h"
#include "shell/Globals.h"
#include "shell/Window1.h"

namespace {

// A control by its name, as "AimValue(3)" for a member of an array.
QWidget* control(Window1* w, const QString& name)
{
    const QString base = name.section('(', 0, 0);
    for (QWidget* c : w->findChildren<QWidget*>(base))
        if (base == name || name == QString("%1(%2)").arg(base).arg(c->property("Index").toInt()))
            return c;
    return nullptr;
}

QString textOf(QWidget* c)
{
    for (const char* p : {"text", "title", "plainText"})
        if (c->metaObject()->indexOfProperty(p) >= 0)
            return c->property(p).toString();
    return QString();
}

// The lock rule: bound to both sides of an axis stretches, to the far side alone follows it.
QRect locked(QRect r, const QString& locks, QSize size)
{
    const int dw = size.width() - 870, dh = size.height() - 520;
    if (locks.contains('L') && locks.contains('R'))
        r.setWidth(r.width() + dw);
    else if (locks.contains('R'))
        r.translate(dw, 0);
    if (locks.contains('T') && locks.contains('B'))
        r.setHeight(r.height() + dh);
    else if (locks.contains('B'))
        r.translate(0, dh);
    return r;
}

}  // namespace

class TestWindow1 : public QObject {
    Q_OBJECT
    Window1* w = nullptr;

    void resizeContent(QSize size)
    {
        w->resize(size + w->size() - w->centralWidget()->size());
        QTRY_COMPARE(w->centralWidget()->size(), size.expandedTo(QSize(680, 380)));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(!Window1::exists());
        w = Window1::instance();
        QCOMPARE(Window1::instance(), w);
        QCOMPARE(w->Timer4->Mode(), 1);  // armed once by the opening
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QCOMPARE(w->centralWidget()->size(), QSize(870, 520));
        QVERIFY(!(w->windowFlags() & (Qt::WindowMaximizeButtonHint | Qt::WindowMinimizeButtonHint)));
    }

    void inventory_data()
    {
        QTest::addColumn<QString>("cls");
        QTest::addColumn<QString>("parent");
        QTest::addColumn<QRect>("rect");
        QTest::addColumn<QString>("locks");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<bool>("visible");
        QTest::addColumn<int>("fontPx");
        QTest::addColumn<QString>("text");
        auto row = [](const char* name, const char* cls, const char* parent, QRect r, const char* locks, bool enabled,
                      bool visible, int px, const QString& text) {
            QTest::newRow(name) << cls << parent << r << locks << enabled << visible << px << text;
        };
        row("Winback", "RectangleShape", "", {2, 2, 866, 516}, "LTRB", true, false, 0, "");
        row("ListBox1", "Listbox", "", {20, 268, 830, 212}, "LTRB", true, true, 12, "");
        row("ListHeader", "Listbox", "", {20, 244, 830, 20}, "LR", true, true, 12, "");
        row("OnlyPicture", "QCheckBox", "", {337, 486, 500, 20}, "RB", true, true, 12, Globals::kOnlyPictCheck());
        row("FileNameTag", "QLineEdit", "", {20, 484, 150, 22}, "", true, false, 14, "Filename Field");
        row("ImageBack", "RoundRectangleShape", "", {20, 17, 215, 215}, "", false, true, 0, "");
        row("Canvas1", "Canvas", "ImageBack", {27, 24, 200, 200}, "", false, true, 0, "");
        row("TextArea1", "QPlainTextEdit", "", {245, 20, 180, 209}, "LR", true, true, 12, Globals::kUsageText());
        row("AimValue(0)", "QLineEdit", "AimGroup", {474, 204, 40, 22}, "R", true, true, 12, "");
        row("LabText(8)", "QLabel", "AimGroup", {630, 207, 20, 20}, "R", true, true, 12, "");
        row("BaseKind(3)", "QRadioButton", "BaseGroup", {585, 40, 183, 20}, "R", true, true, 12, Globals::kBaseKind3());
        row("AddValue(1)", "QLineEdit", "AddGroup", {526, 142, 30, 22}, "R", false, true, 12, "0");
        row("AddValue(2)", "QLineEdit", "AddGroup", {580, 142, 50, 22}, "R", true, true, 12, "0");
        row("ClearBtn", "QToolButton", "", {545, 118, 50, 14}, "TR", true, true, 9, "Clear");
        row("ExecuteBtn", "QPushButton", "", {774, 35, 76, 76}, "R", true, true, 12, "Change\nDate\nExecute");
    }
    void inventory()
    {
        QFETCH(QString, cls);
        QFETCH(QString, parent);
        QFETCH(QRect, rect);
        QFETCH(QString, locks);
        QFETCH(int, fontPx);
        QWidget* c = control(w, QTest::currentDataTag());
        QVERIFY(c);
        QCOMPARE(c->metaObject()->className(), cls);
        QCOMPARE(c->parentWidget(), parent.isEmpty() ? w->centralWidget() : control(w, parent));
        QTEST(c->isEnabled(), "enabled");
        QTEST(c->isVisibleTo(w), "visible");
        QTEST(textOf(c), "text");
        if (fontPx)
            QCOMPARE(c->font().pixelSize(), fontPx);
        QVERIFY(!c->acceptDrops());
        // In content coordinates, also inside a group.
        QCOMPARE(QRect(c->mapTo(w->centralWidget(), QPoint()), c->size()), rect);
        for (QSize size : {QSize(1000, 700), QSize(680, 380), QSize(870, 520)}) {
            resizeContent(size);
            QCOMPARE(w->lockLayout->rectOf(c), locked(rect, locks, size));
        }
    }

    // At the minimum size the right-bound groups reach the usage text, which shrinks away.
    void minimumSize()
    {
        resizeContent(QSize(600, 300));
        auto rect = [&](QWidget* c) { return w->lockLayout->rectOf(c); };
        for (QWidget* group : {w->AimGroup, w->BaseGroup, w->AddGroup})
            QCOMPARE(rect(group).left(), 245);
        QCOMPARE(rect(w->TextArea1).width(), -10);
        QCOMPARE(w->TextArea1->width(), 0);
        QCOMPARE(rect(w->ListBox1).height(), 72);
        QCOMPARE(rect(w->OnlyPicture).top(), 346);
        resizeContent(QSize(870, 520));
    }

    // Each parent's controls by tab index; a group's controls right after the group.
    void tabOrder()
    {
        const QStringList expected = {"ListBox1",    "ListHeader",  "OnlyPicture", "TextArea1",   "AimValue(0)",
                                      "AimValue(5)", "LabText(11)", "AddValue(0)", "LabText(5)",  "BaseKind(1)",
                                      "BaseKind(2)", "BaseKind(3)", "BaseKind(4)", "BaseKind(5)", "AddValCheckBox",
                                      "ExecuteBtn"};
        QStringList seen;
        QWidget* c = w->ListBox1;
        do {
            for (const QString& n : expected)
                if (control(w, n) == c)
                    seen << n;
            c = c->nextInFocusChain();
        } while (c != w->ListBox1);
        QCOMPARE(seen, expected);
    }

    void startState()
    {
        // BaseKind is made in the order 1, 2, 4, 5, 3; only 4 is chosen.
        const auto radios = w->BaseGroup->findChildren<QRadioButton*>();
        QCOMPARE(radios, (QList<QRadioButton*>{w->BaseKind(1), w->BaseKind(2), w->BaseKind(4), w->BaseKind(5),
                                               w->BaseKind(3)}));
        for (QRadioButton* r : radios)
            QCOMPARE(r->isChecked(), r == w->BaseKind(4));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, w->BaseKind(0));
        const QFontMetrics tag = w->FileNameTag->fontMetrics();
        QCOMPARE(tag.horizontalAdvance('i'), tag.horizontalAdvance('W'));  // a fixed-pitch face

        // The header strip's boxes stand above the table's columns.
        for (int c = 0; c < 7; ++c)
            QCOMPARE(w->ListHeader->columnWidth(c), w->ListBox1->columnWidth(c));
        QCOMPARE(w->ListHeader->Cell(0, 1), "All this column");
        QCOMPARE(w->ListBox1->columnWidth(6), 0);
        QTRY_COMPARE(w->Timer4->Mode(), 0);
    }
};

QTEST_MAIN(TestWindow1)
#include "tst_window1.moc"
