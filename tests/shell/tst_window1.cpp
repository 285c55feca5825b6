// The main window as it is made: every control's class, parent, place, locks, tab order,
// state, font and text, and where the controls stand when the window is resized.

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
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
    const auto open = name.indexOf('(');
    if (open < 0)
        return w->findChild<QWidget*>(name);
    const QString base = name.left(open);
    const int index = name.mid(open + 1).chopped(1).toInt();
    for (QWidget* c : w->findChildren<QWidget*>(base))
        if (c->property("Index").toInt() == index)
            return c;
    return nullptr;
}

QString textOf(QWidget* c)
{
    if (auto* b = qobject_cast<QAbstractButton*>(c))
        return b->text();
    if (auto* l = qobject_cast<QLineEdit*>(c))
        return l->text();
    if (auto* l = qobject_cast<QLabel*>(c))
        return l->text();
    if (auto* g = qobject_cast<QGroupBox*>(c))
        return g->title();
    if (auto* t = qobject_cast<QPlainTextEdit*>(c))
        return t->toPlainText();
    return QString();
}

// The lock rule: bound to both sides of an axis stretches, to the far side alone follows it.
QRect expectedRect(QRect design, const QString& locks, QSize size)
{
    const int dw = size.width() - 870, dh = size.height() - 520;
    if (locks.contains('L') && locks.contains('R'))
        design.setWidth(design.width() + dw);
    else if (locks.contains('R'))
        design.translate(dw, 0);
    if (locks.contains('T') && locks.contains('B'))
        design.setHeight(design.height() + dh);
    else if (locks.contains('B'))
        design.translate(0, dh);
    return design;
}

struct Row {
    const char* name;
    const char* cls;
    const char* parent;
    int left, top, width, height;
    const char* locks;
    bool enabled, visible;
    int fontPx;  // 0: no text of its own
};

// Back to front, as the window makes them.
const Row kInventory[] = {
    {"Winback", "RectangleShape", "", 2, 2, 866, 516, "LTRB", true, false, 0},
    {"ListBox1", "Listbox", "", 20, 268, 830, 212, "LTRB", true, true, 12},
    {"ListHeader", "Listbox", "", 20, 244, 830, 20, "LR", true, true, 12},
    {"OnlyPicture", "QCheckBox", "", 337, 486, 500, 20, "RB", true, true, 12},
    {"FileNameTag", "QLineEdit", "", 20, 484, 150, 22, "", true, false, 14},
    {"ImageBack", "RoundRectangleShape", "", 20, 17, 215, 215, "", false, true, 0},
    {"Canvas1", "Canvas", "ImageBack", 27, 24, 200, 200, "", false, true, 0},
    {"TextArea1", "QPlainTextEdit", "", 245, 20, 180, 209, "LR", true, true, 12},
    {"AimGroup", "QGroupBox", "", 435, 180, 415, 55, "R", true, true, 12},
    {"AimValue(0)", "QLineEdit", "AimGroup", 474, 204, 40, 22, "R", true, true, 12},
    {"AimValue(5)", "QLineEdit", "AimGroup", 783, 204, 30, 22, "R", true, true, 12},
    {"LabText(6)", "QLabel", "AimGroup", 516, 207, 20, 20, "R", true, true, 12},
    {"LabText(11)", "QLabel", "AimGroup", 817, 207, 20, 20, "R", true, true, 12},
    {"BaseGroup", "QGroupBox", "", 435, 20, 335, 90, "R", true, true, 12},
    {"BaseKind(1)", "QRadioButton", "BaseGroup", 438, 40, 145, 20, "R", true, true, 12},
    {"BaseKind(4)", "QRadioButton", "BaseGroup", 585, 62, 183, 20, "R", true, true, 12},
    {"BaseKind(3)", "QRadioButton", "BaseGroup", 585, 40, 183, 20, "R", true, true, 12},
    {"AddGroup", "QGroupBox", "", 435, 118, 415, 55, "R", true, true, 12},
    {"AddValue(0)", "QLineEdit", "AddGroup", 474, 142, 30, 22, "R", false, true, 12},
    {"AddValue(1)", "QLineEdit", "AddGroup", 526, 142, 30, 22, "R", false, true, 12},
    {"AddValue(2)", "QLineEdit", "AddGroup", 580, 142, 50, 22, "R", true, true, 12},
    {"AddValue(5)", "QLineEdit", "AddGroup", 783, 142, 30, 22, "R", true, true, 12},
    {"LabText(0)", "QLabel", "AddGroup", 506, 145, 20, 20, "R", true, true, 12},
    {"LabText(5)", "QLabel", "AddGroup", 817, 145, 20, 20, "R", true, true, 12},
    {"ClearBtn", "QToolButton", "", 545, 118, 50, 14, "TR", true, true, 9},
    {"AddValCheckBox", "QCheckBox", "", 614, 118, 157, 14, "TR", true, true, 9},
    {"ExecuteBtn", "QPushButton", "", 774, 35, 76, 76, "R", true, true, 12},
};

}  // namespace

class TestWindow1 : public QObject {
    Q_OBJECT
    Window1* w = nullptr;

    void resizeContent(QSize size)
    {
        const QSize chrome = w->size() - w->centralWidget()->size();
        w->resize(size + chrome);
        QTRY_COMPARE(w->centralWidget()->size(), size.expandedTo(QSize(680, 380)));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(!Window1::exists());
        w = Window1::instance();
        QVERIFY(Window1::exists());
        QCOMPARE(Window1::instance(), w);
        // Armed once by the opening, it fires by itself.
        QCOMPARE(w->Timer4->Mode(), 1);
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QTRY_COMPARE(w->Timer4->Mode(), 0);
    }

    void window()
    {
        QCOMPARE(w->centralWidget()->size(), QSize(870, 520));
        QCOMPARE(w->windowTitle(), QStringLiteral("Velkaro"));
        QVERIFY(!(w->windowFlags() & Qt::WindowMaximizeButtonHint));
        QVERIFY(!(w->windowFlags() & Qt::WindowMinimizeButtonHint));
        QVERIFY(w->windowFlags() & Qt::WindowCloseButtonHint);
    }

    void inventory_data()
    {
        QTest::addColumn<int>("row");
        for (int i = 0; i < int(std::size(kInventory)); ++i)
            QTest::newRow(kInventory[i].name) << i;
    }
    void inventory()
    {
        QFETCH(int, row);
        const Row& r = kInventory[row];
        QWidget* c = control(w, r.name);
        QVERIFY(c);
        QCOMPARE(c->metaObject()->className(), r.cls);
        QWidget* parent = *r.parent ? control(w, r.parent) : w->centralWidget();
        QCOMPARE(c->parentWidget(), parent);
        // Design rectangles are in content coordinates, for controls in a group too.
        QCOMPARE(QRect(c->mapTo(w->centralWidget(), QPoint(0, 0)), c->size()),
                 QRect(r.left, r.top, r.width, r.height));
        QCOMPARE(c->isEnabled(), r.enabled);
        QCOMPARE(c->isVisibleTo(w), r.visible);
        if (r.fontPx)
            QCOMPARE(c->font().pixelSize(), r.fontPx);
        QVERIFY(!c->acceptDrops());
    }

    // Where each control stands after a resize follows from its locks alone.
    void locks_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("larger") << QSize(1000, 700);
        QTest::newRow("minimum") << QSize(680, 380);
        QTest::newRow("below the minimum") << QSize(500, 300);
        QTest::newRow("design") << QSize(870, 520);
    }
    void locks()
    {
        QFETCH(QSize, size);
        resizeContent(size);
        const QSize content = w->centralWidget()->size();
        for (const Row& r : kInventory) {
            const QRect expected = expectedRect(QRect(r.left, r.top, r.width, r.height), r.locks, content);
            QCOMPARE(w->lockLayout->rectOf(control(w, r.name)), expected);
        }
    }

    void minimumSize()
    {
        resizeContent(QSize(680, 380));
        auto rect = [&](const char* name) { return w->lockLayout->rectOf(control(w, name)); };
        // The right-bound groups reach the usage text's left edge; the text has shrunk away.
        for (const char* group : {"AimGroup", "BaseGroup", "AddGroup"})
            QCOMPARE(rect(group).left(), 245);
        QCOMPARE(rect("TextArea1").width(), -10);
        QCOMPARE(w->TextArea1->width(), 0);
        QCOMPARE(rect("ListBox1").height(), 72);
        QCOMPARE(rect("OnlyPicture").top(), 346);
        QCOMPARE(rect("ListHeader").width(), rect("ListBox1").width());
        resizeContent(QSize(870, 520));
    }

    void texts_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::newRow("OnlyPicture") << "OnlyPicture" << Globals::kOnlyPictCheck();
        QTest::newRow("FileNameTag") << "FileNameTag" << "Filename Field";
        QTest::newRow("TextArea1") << "TextArea1" << Globals::kUsageText();
        QTest::newRow("AimGroup") << "AimGroup" << Globals::kAimGroupCap();
        QTest::newRow("BaseGroup") << "BaseGroup" << "Reference Group";
        QTest::newRow("AddGroup") << "AddGroup" << "Addition Value";
        QTest::newRow("ExecuteBtn") << "ExecuteBtn" << "Change\nDate\nExecute";
        QTest::newRow("ClearBtn") << "ClearBtn" << "Clear";
        QTest::newRow("AddValCheckBox") << "AddValCheckBox" << "Enable year and month input";
        const char* kinds[] = {"File creation date", "File modification date", "Exif image modification date",
                               "Exif shooting date", "Exif digitization date"};
        for (int i = 1; i <= 5; ++i)
            QTest::newRow(qPrintable(QString("BaseKind(%1)").arg(i))) << QString("BaseKind(%1)").arg(i) << kinds[i - 1];
        const char* separators[] = {"/", "/", "", ":", ":", ""};
        for (int i = 0; i < 12; ++i)
            QTest::newRow(qPrintable(QString("LabText(%1)").arg(i))) << QString("LabText(%1)").arg(i)
                                                                     << separators[i % 6];
        for (int i = 0; i < 6; ++i) {
            QTest::newRow(qPrintable(QString("AddValue(%1)").arg(i))) << QString("AddValue(%1)").arg(i) << "0";
            QTest::newRow(qPrintable(QString("AimValue(%1)").arg(i))) << QString("AimValue(%1)").arg(i) << "";
        }
    }
    void texts()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QWidget* c = control(w, name);
        QVERIFY(c);
        QCOMPARE(textOf(c), text);
    }

    // Tabbing walks each parent's controls by their tab index, into a group after the group.
    void tabOrder()
    {
        const QStringList expected = {"ListBox1", "ListHeader", "OnlyPicture", "FileNameTag", "TextArea1",
                                      "AimValue(0)", "AimValue(5)", "LabText(6)", "LabText(11)", "AddValue(0)",
                                      "AddValue(2)", "LabText(0)", "BaseKind(1)", "BaseKind(3)", "BaseKind(4)",
                                      "AddValCheckBox", "ExecuteBtn"};
        QList<QWidget*> wanted;
        for (const QString& n : expected)
            wanted << control(w, n);
        QStringList seen;
        QWidget* c = wanted.first();
        do {
            const auto i = wanted.indexOf(c);
            if (i >= 0)
                seen << expected[i];
            c = c->nextInFocusChain();
        } while (c != wanted.first() && seen.size() < expected.size());
        QCOMPARE(seen, expected);
    }

    void arraysAndTimers()
    {
        QCOMPARE(w->AimValue.count(), 6);
        QCOMPARE(w->AddValue.count(), 6);
        QCOMPARE(w->LabText.count(), 12);
        QCOMPARE(w->BaseKind.count(), 5);
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, w->BaseKind(0));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, w->AddValue(6));
        // Made in the order 1, 2, 4, 5, 3: the third radio button in the group is BaseKind(4).
        const auto radios = w->BaseGroup->findChildren<QRadioButton*>(Qt::FindDirectChildrenOnly);
        QCOMPARE(radios.indexOf(w->BaseKind(4)), 2);
        QCOMPARE(radios.indexOf(w->BaseKind(3)), 4);
        for (int i = 1; i <= 5; ++i)
            QCOMPARE(w->BaseKind(i)->isChecked(), i == 4);
        for (OneShotTimer* t : {w->Timer1, w->Timer2, w->Timer3, w->Timer4, w->Timer5})
            QCOMPARE(t->Period(), 10);
        const QFontMetrics tag = w->FileNameTag->fontMetrics();
        QCOMPARE(tag.horizontalAdvance('i'), tag.horizontalAdvance('W'));
    }

    void tables()
    {
        QCOMPARE(w->ListBox1->ColumnCount(), 7);
        QCOMPARE(w->ListHeader->ColumnCount(), 7);
        QVERIFY(w->ListBox1->HasHeader());
        QVERIFY(!w->ListHeader->HasHeader());
        QCOMPARE(w->ListBox1->ListCount(), 0);
        QCOMPARE(w->ListHeader->ListCount(), 1);
        const QStringList headings = Globals::kListInitValue().split('\t');
        const QStringList strip = Globals::kListHeaderInitValue().split('\t');
        QAbstractItemModel* m = static_cast<QTableView*>(w->ListBox1)->model();
        for (int c = 0; c < 6; ++c) {
            QCOMPARE(m->headerData(c, Qt::Horizontal).toString(), headings[c]);
            QCOMPARE(w->ListHeader->Cell(0, c), strip[c]);
            QCOMPARE(w->ListHeader->columnWidth(c), w->ListBox1->columnWidth(c));
        }
        QCOMPARE(w->ListBox1->columnWidth(6), 0);
        // Newest modification date first.
        QCOMPARE(w->ListBox1->SortedColumn(), 2);
        QCOMPARE(w->ListBox1->ColumnSortDirection(2), -1);
        QVERIFY(w->acceptDrops());
    }
};

QTEST_MAIN(TestWindow1)
#include "tst_window1.moc"
