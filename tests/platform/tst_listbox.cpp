#include "platform/base/Exceptions.h"
#include "platform/listbox/Listbox.h"
#include "platform/listbox/ListboxModel.h"

#include <QAbstractItemModelTester>
#include <QtTest>
#include <QtWidgets>

#include <memory>

namespace {

// A table set up as the file table is: seven columns, check boxes in 0 to 5, rows "a", "b"...
// (five unless asked otherwise). The model runs under Qt's model tester.
std::unique_ptr<Listbox> fileTable(bool hasHeader = true, int rows = 5)
{
    auto lb = std::make_unique<Listbox>();
    new QAbstractItemModelTester(lb->model(), QAbstractItemModelTester::FailureReportingMode::QtTest, lb.get());
    lb->setColumnCount(7);
    lb->setColumnWidths(QStringLiteral(",15%,15%,15%,15%,15%,0"));
    lb->setHasHeader(hasHeader);
    lb->setInitialValue(hasHeader ? QStringLiteral("Name\tA\tB\tC\tD\tE") : QStringLiteral("All\tx\tx\tx\tx\tx"));
    for (int c = 0; c <= 5; ++c)
        lb->setColumnType(c, 2);
    lb->resize(830, hasHeader ? 212 : 40);
    for (int i = 0; i < rows; ++i)
        lb->AddRow(QString(QChar('a' + i)));
    return lb;
}

QString column0(const Listbox& lb)
{
    QString names;
    for (int r = 0; r < lb.ListCount(); ++r)
        names += lb.Cell(r, 0);
    return names;
}

}  // namespace

class TestListbox : public QObject {
    Q_OBJECT
private slots:
    // Every index outside the table throws and leaves the table as it was. (A row past the
    // end is the file table's test: a timer that acts after its row went.)
    void outOfBoundsThrows()
    {
        auto lb = fileTable();
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->Cell(-1, 0));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->setCell(0, 7, "x"));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->setCellCheck(0, -1, true));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->RemoveRow(5));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->RemoveRows({0, 5}));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->setListIndex(-2));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->Selected(5));
        QVERIFY_THROWS_EXCEPTION(OutOfBoundsException, lb->PressHeader(7));
        QCOMPARE(lb->ListCount(), 5);
    }

    // The file table and the strip above it, equally wide, have their columns above each
    // other, though only the table shows a scroll bar.
    void columnsStandAboveEachOther()
    {
        QWidget window;
        auto list = fileTable(true, 200);
        auto strip = fileTable(false, 0);
        list->setParent(&window);
        strip->setParent(&window);
        list->setGeometry(0, 30, 830, 212);
        strip->setGeometry(0, 0, 830, 20);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_VERIFY(list->verticalScrollBar()->isVisible());
        for (int c = 0; c <= 5; ++c) {
            QCOMPARE(strip->columnViewportPosition(c), list->columnViewportPosition(c));
            QCOMPARE(strip->columnWidth(c), list->columnWidth(c));
        }
        const int total = list->columnViewportPosition(5) + list->columnWidth(5);
        QVERIFY(list->isColumnHidden(6));
        QVERIFY(qAbs(list->columnWidth(1) - total * 15 / 100) <= 1);
        QVERIFY(total <= list->viewport()->width());
    }

    // Many rows with few keys, so that a sort which is not stable shows it, in both
    // directions; short Latin-1 keys among long ones and others, which the table keeps
    // apart. Each row's tag holds its first place, and its tick tells whether that place
    // was even.
    void sortIsStableAndMovesRowsWhole()
    {
        const QStringList keys = {"2021-01", "Exif取得不能", "2021-00", "2021-01 and more than a cell keeps in place",
                                  "2021-0\u00e9", "2021-0"};
        for (const int direction : {1, -1}) {
            auto lb = fileTable(true, 0);
            for (int i = 0; i < 300; ++i) {
                lb->AddRow(QString::number(i));
                lb->setCell(i, 2, keys.at((i * 7) % keys.size()));
                lb->setCellTag(i, 6, i);
                lb->setCellCheck(i, 3, i % 2 == 0);
            }
            lb->setListIndex(150);
            QSignalSpy change(lb.get(), &Listbox::Change);
            lb->setColumnSortDirection(2, direction);
            lb->PressHeader(2);
            for (int r = 0; r < lb->ListCount(); ++r) {
                const qint64 was = lb->CellTagAt(r, 6);
                QCOMPARE(lb->Cell(r, 0), QString::number(was));
                QCOMPARE(lb->CellCheck(r, 3), was % 2 == 0);
                const int order = r ? QString::compare(lb->Cell(r - 1, 2), lb->Cell(r, 2)) * direction : -1;
                QVERIFY2(order < 0 || (order == 0 && lb->CellTagAt(r - 1, 6) < was), qPrintable(QString::number(r)));
            }
            QCOMPARE(lb->CellTagAt(lb->ListIndex(), 6), qint64(150));  // the selection followed its row
            QCOMPARE(change.count(), 0);
        }
    }

    // A cell's text against others, case ignored, whether the table keeps it in place
    // (short Latin-1) or as a string.
    void cellIsText()
    {
        auto lb = fileTable();
        const QStringList texts = {"Img_0001.jpg", "Exif取得不能", "a name longer than a cell keeps in place"};
        for (int r = 0; r < 3; ++r)
            lb->setCell(r, 3, texts.at(r));
        for (int r = 0; r < 3; ++r)
            for (int t = 0; t < 3; ++t)
                QCOMPARE(lb->CellIsText(r, 3, texts.at(t).toUpper()), r == t);
        QVERIFY(!lb->CellIsText(0, 3, texts.at(0).chopped(1)));
        QVERIFY(!lb->CellIsText(3, 3, texts.at(0)));
    }

    // Change comes once for each change of the selected row, also when the selected row goes
    // away, and then with the table as it is afterwards; a row that is not selected goes
    // without one. (Deleting all rows with one selected is the scheduled value's test: the
    // display empties.)
    void changeIsRaised()
    {
        auto lb = fileTable();
        for (int r = 0; r < 5; ++r)
            lb->setCell(r, 2, "text not yet told to the views");
        QList<int> seen;  // ListIndex inside each Change
        connect(lb.get(), &Listbox::Change, this, [&] { seen << lb->ListIndex(); });
        lb->setListIndex(2);
        lb->RemoveRow(3);
        lb->RemoveRow(2);
        lb->setListIndex(1);
        lb->RemoveRows({0});  // rows around the selected one go: it stays selected
        QCOMPARE(lb->Cell(lb->ListIndex(), 0), QStringLiteral("b"));
        lb->setListIndex(-1);
        lb->setListIndex(0);
        lb->RemoveRows({1, 0, 1});  // the selected one among them
        lb->DeleteAllRows();
        QCOMPARE(seen, (QList<int>{2, -1, 1, -1, 0, -1}));
        QCoreApplication::processEvents();  // the pending cell changes reach the model tester
    }

    // Rows added in a batch reach the views in one insertion at its end, or when a row of
    // them is selected; the table counts and reads them all along.
    void rowsAddedInABatch()
    {
        auto lb = fileTable();
        QSignalSpy inserted(lb->model(), &QAbstractItemModel::rowsInserted);
        {
            const Listbox::RowBatch batch(*lb);
            lb->AddRow("f");
            lb->AddRow("g");
            QCOMPARE(lb->ListCount(), 7);
            QCOMPARE(lb->Cell(6, 0), "g");
            QCOMPARE(inserted.count(), 0);
            lb->setListIndex(6);
            lb->AddRow("h");
        }
        QCOMPARE(lb->model()->rowCount(), 8);
        QCOMPARE(inserted.count(), 2);
        QCOMPARE(inserted.at(0).at(2).toInt() - inserted.at(0).at(1).toInt(), 1);  // f and g together
        QCOMPARE(lb->ListIndex(), 6);
    }

    // The pointer over the shown table (its moves are the hover tag's tests). A press
    // reaches CellClick before the table selects the row and toggles the box (which x
    // toggles is the file table's test), and the double click that follows a second press
    // adds no toggle of its own. A click on a heading sorts in the column's own direction,
    // on the sort column again turns it, and the choice stays for later sorts.
    void pointer()
    {
        auto lb = fileTable();
        lb->show();
        QVERIFY(QTest::qWaitForWindowExposed(lb.get()));
        QList<QVariantList> clicks;  // row, column, x, and what the handler saw of the table
        connect(lb.get(), &Listbox::CellClick, this, [&](int row, int col, int cx, int) {
            clicks.append({row, col, cx, lb->CellCheck(row, col), lb->ListIndex()});
        });
        const QPoint at = lb->visualRect(lb->model()->index(1, 0)).topLeft() + QPoint(10, 7);
        QTest::mouseClick(lb->viewport(), Qt::LeftButton, {}, at);
        QCOMPARE(clicks, (QList<QVariantList>{{1, 0, 10, false, -1}}));
        QCOMPARE(lb->ListIndex(), 1);
        QVERIFY(lb->CellCheck(1, 0));
        QTest::mouseDClick(lb->viewport(), Qt::LeftButton, {}, at);
        QVERIFY(lb->CellCheck(1, 0));

        for (int r = 0; r < 5; ++r)
            lb->setCell(r, 2, QString::number((r + 1) % 3));  // a 1, b 2, c 0, d 1, e 2
        lb->setColumnSortDirection(2, -1);
        QHeaderView* heads = lb->horizontalHeader();
        const auto clickHeading = [&](int c) {
            QTest::mouseClick(heads->viewport(), Qt::LeftButton, {}, QPoint(heads->sectionViewportPosition(c) + 30, 5));
            return column0(*lb);
        };
        QCOMPARE(clickHeading(2), QStringLiteral("beadc"));
        QCOMPARE(clickHeading(2), QStringLiteral("cadbe"));
        QCOMPARE(clickHeading(0), QStringLiteral("abcde"));
        lb->DeleteAllRows();
        for (const char* name : {"z", "x", "y"})
            lb->AddRow(name);
        lb->Sort();
        QCOMPARE(column0(*lb), QStringLiteral("xyz"));
    }
};

QTEST_MAIN(TestListbox)
#include "tst_listbox.moc"
