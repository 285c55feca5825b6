// The file table: the row a file becomes, the ticks after real clicks on the boxes, drops on
// the window and the OnlyPicture walk. Ticks read "1" or "0" for columns 0 to 5.
#include <QtTest>

#include <QCheckBox>
#include <QLocalServer>

#include <sys/stat.h>

#include <sys/stat.h>

#include "platform/widgets/Canvas.h"
#include "platform/app/DragItem.h"
#include "platform/app/HandlerGuard.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/files/ReadAhead.h"
#include "platform/widgets/Shapes.h"
#include "shell/Window1.h"
#include "support/TiffBuilder.h"

namespace {

const QByteArray A = "2011:01:02 03:04:05", B = "2012:02:03 04:05:06", C = "2013:03:04 05:06:07";

QByteArray allDates() { return TiffBuilder::jpeg(camera(false, A, B, C).bytes()); }

QString ticks(const Listbox* table, int row)
{
    QString out;
    for (int column = 0; column <= 5; ++column)
        out += table->CellCheck(row, column) ? '1' : '0';
    return out;
}

void setTicks(Listbox* table, int row, const QString& ticks)
{
    for (int column = 0; column <= 5; ++column)
        table->setCellCheck(row, column, ticks[column] == '1');
}

}  // namespace

class TestTable : public QObject {
    Q_OBJECT
    Window1* w = nullptr;
    QTemporaryDir dir;
    int failures = 0;  // reported by the handlers' guard
    QString reported;  // the last report: what could not be done, and why
    QLocalServer socket;

    QStringList listed() const
    {
        QStringList names;
        for (int row = 0; row < w->ListBox1->ListCount(); ++row)
            names << w->ListBox1->Cell(row, 0);
        return names;
    }
    // Rows put into the table directly, each with its file in the tag of column 0 ("": none).
    void listDirectly(const QStringList& names)
    {
        for (const QString& name : names) {
            w->ListBox1->AddRow(name);
            if (!name.isEmpty())
                w->ListBox1->setCellTag(w->ListBox1->ListCount() - 1, 0, QVariant::fromValue(FolderItem(dir.filePath(name))));
        }
    }
    void click(Listbox* table, int row, int column, int x)
    {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          QPoint(table->columnViewportPosition(column) + x, table->rowViewportPosition(row) + table->rowHeight(row) / 2));
    }

private slots:
    void initTestCase()
    {
        setFailureReport([this](const QString& action, const QString& why) { ++failures, reported = action + ": " + why; });
        w = Window1::instance();
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QTRY_COMPARE(w->Timer4->Mode(), 0);  // the opening's sort has passed
        QCOMPARE(ticks(w->ListHeader, 0), "111111");
        QImage picture(8, 6, QImage::Format_RGB32);
        picture.fill(Qt::darkGreen);
        QBuffer jpeg;
        QVERIFY(jpeg.open(QIODevice::WriteOnly) && picture.save(&jpeg, "JPEG"));
        QVERIFY(writeBytes(dir.filePath("old.jpg"), jpeg.data(), 30) && writeBytes(dir.filePath("写真 と 空白.jpg"), jpeg.data(), 5));
        QVERIFY(writeBytes(dir.filePath("new.jpg"), jpeg.data(), 2) && writeBytes(dir.filePath("middle.txt"), "not a picture", 10));
        QVERIFY(writeBytes(dir.filePath("all.jpg"), allDates()));
        QVERIFY(QDir(dir.path()).mkdir("folder"));
        // The newest items, the socket not older than the FIFO.
        QVERIFY(::mkfifo(QFile::encodeName(dir.filePath("fifo")).constData(), 0600) == 0 && socket.listen(dir.filePath("socket")));
        QVERIFY(QFile::link(dir.filePath("loop"), dir.filePath("loop")));
    }

    void init()
    {
        failures = 0;
        w->clearTables();
        setTicks(w->ListHeader, 0, "111111");
        const QSignalBlocker quiet(w->OnlyPicture);
        w->OnlyPicture->setChecked(false);
        w->OnlyPicture->setVisible(true);
    }

    // A file becomes a row: its name and dates, the Exif dates, and the header's ticks except
    // where the file gave no date. What is not taken leaves curRow and the stream as they were.
    void row_data()
    {
        for (const char* column : {"name", "header", "seen", "ticks"})  // name "": a nil item
            QTest::addColumn<QString>(column);
        QTest::addColumn<bool>("onlyPicture");
        QTest::newRow("all three dates") << "all.jpg" << "111111" << seen(allDates(), {A, B, C}, 1) << "111111" << false;
        QTest::newRow("no Exif, some boxes off") << "middle.txt" << "011011" << "- | - | - | -" << "011000" << false;
        QTest::newRow("folder") << "folder" << "111111" << "- | - | - | -" << "111000" << false;
        QTest::newRow("only pictures, a picture") << "new.jpg" << "111111" << "- | - | - | -" << "111000" << true;
        QTest::newRow("only pictures, not a picture: not taken") << "all.jpg" << "111111" << "" << "" << true;
        QTest::newRow("nil: not taken") << "" << "111111" << "" << "" << false;
    }
    void row()
    {
        QFETCH(QString, name);
        QFETCH(QString, header);
        QFETCH(bool, onlyPicture);
        const FolderItem f = name.isEmpty() ? FolderItem() : FolderItem(dir.filePath(name));
        setTicks(w->ListHeader, 0, header);
        const QSignalBlocker quiet(w->OnlyPicture);
        w->OnlyPicture->setChecked(onlyPicture);
        w->bs = nullptr;
        w->curRow = 42;
        w->addFileToTable(f);
        const bool taken = w->ListBox1->ListCount() > 0;
        QTEST(taken ? exifView(*w, 0) : QString(), "seen");
        QTEST(taken ? ticks(w->ListBox1, 0) : QString(), "ticks");
        QCOMPARE(ticks(w->ListHeader, 0), header);
        QCOMPARE(w->curRow, taken ? 0 : 42);
        QCOMPARE(w->bs.isNil(), !taken || name == "folder");
        if (taken) {
            QCOMPARE(w->ListBox1->CellTag(0, 0).value<FolderItem>(), f);
            QCOMPARE(w->ListBox1->CellTag(0, 2).value<Date>(), f.ModificationDate());
            const QStringList cells{w->ListBox1->Cell(0, 0), w->ListBox1->Cell(0, 1), w->ListBox1->Cell(0, 2)};
            QCOMPARE(cells, (QStringList{name, f.CreationDate().SQLDateTime(), f.ModificationDate().SQLDateTime()}));
        }
    }

    // Clearing empties the table and the preview, nothing else; a file may be listed twice.
    void clear()
    {
        w->ListHeader->setCellCheck(0, 2, false);
        w->addFileToTable(FolderItem(dir.filePath("all.jpg")));
        w->addFileToTable(FolderItem(dir.filePath("all.jpg")));
        QCOMPARE(w->ListBox1->ListCount(), 2);
        const Handle<BinaryStream> stream = w->bs;
        w->Canvas1->setBackdrop(QImage(4, 4, QImage::Format_RGB32));
        w->clearTables();
        QCOMPARE(w->ListBox1->ListCount(), 0);
        QVERIFY(w->Canvas1->Backdrop().isNull());
        QCOMPARE(ticks(w->ListHeader, 0), "110111");
        QVERIFY(w->bs == stream && w->curRow == 1);
    }

    // Rows "name:cells 3 to 5:ticks" in the table's order, with d for a date and m for the
    // marker. A click is "H" (the header row) or a row's name, then the column and the x in the
    // cell; "timer" is the one armed (0: none).
    void clicks_data()
    {
        for (const char* column : {"rows", "header", "where", "expected", "expectedHeader"})
            QTest::addColumn<QString>(column);
        QTest::addColumn<int>("timer");
        const auto row = [](const char* name, const char* rows, const char* header, const char* where, int timer,
                            const char* expected, const char* expectedHeader = "111111") {
            QTest::newRow(name) << rows << header << where << expected << expectedHeader << timer;
        };
        row("column box down to the marker", "A:ddd:100100 B:mdd:100000 C:ddd:100100", "111011", "H 3 10", 1, "A:100100 B:100000 C:100000");
        row("column box down to the marker, other order", "C:ddd:100100 B:mdd:100000 A:ddd:100100", "111011", "H 3 10", 1, "C:100100 B:100000 A:100000");
        row("column box off, markers or not", "A:ddd:111111 B:dmd:111101", "111111", "H 4 10", 1, "A:111101 B:111101", "111101");
        row("beside a column box re-applies it", "A:ddd:110111", "111111", "H 2 40", 1, "A:111111");
        row("corner box, folder first", "B:mmm:000000 A:ddd:000000", "000000", "H 0 10", 1, "B:111000 A:111000");
        row("row box right from the marker", "A:dmd:000000", "111111", "A 0 10", 2, "A:111100");
        row("row box at x 3, folder", "A:mmm:000000", "111111", "A 0 3", 2, "A:111000");
        row("row box off at x 19", "A:ddd:111111 B:ddd:111111", "111111", "B 0 19", 2, "A:111111 B:000000");
        row("two row boxes in one period: the second", "A:ddd:000000 B:ddd:000000", "111111", "A 0 10,B 0 10", 2, "A:100000 B:111111");
        row("beside the row box at x 2", "A:ddd:011111", "111111", "A 0 2", 0, "A:011111");
        row("on the file name at x 20", "A:ddd:011111", "111111", "A 0 20", 0, "A:011111");
        row("a file date box by hand", "A:ddd:111111", "111111", "A 2 10", 0, "A:110111");
        row("a tick on a marker goes", "A:mdd:110011", "111111", "A 3 10", 3, "A:110011");
        row("an Exif date box by hand", "A:ddd:111111", "111111", "A 4 10", 3, "A:111101");
    }
    void clicks()
    {
        QFETCH(QString, rows);
        QFETCH(QString, header);
        QFETCH(QString, where);
        QFETCH(int, timer);
        for (const QString& desc : rows.split(' ')) {
            listDirectly({desc.left(1)});
            for (int column = 3; column <= 5; ++column)
                w->ListBox1->setCell(w->ListBox1->ListCount() - 1, column, desc[column - 1] == 'm' ? kNoExif : "2021:02:03 04:05:06");
            setTicks(w->ListBox1, w->ListBox1->ListCount() - 1, desc.mid(6));
        }
        setTicks(w->ListHeader, 0, header);
        OneShotTimer* timers[] = {w->Timer1, w->Timer2, w->Timer3};
        QSignalSpy fired(timers[qMax(timer, 1) - 1], &OneShotTimer::Action);
        QStringList at;
        for (const QString& one : where.split(',')) {
            at = one.split(' ');
            const bool onHeader = at[0] == "H";
            click(onHeader ? w->ListHeader : w->ListBox1, onHeader ? 0 : int(listed().indexOf(at[0])), at[1].toInt(), at[2].toInt());
        }
        for (int i = 1; i <= 3; ++i)
            QCOMPARE(timers[i - 1]->Mode(), i == timer ? 1 : 0);
        QVERIFY(!timer || fired.wait());
        QStringList shown;
        for (int row = 0; row < w->ListBox1->ListCount(); ++row)
            shown << w->ListBox1->Cell(row, 0) + ':' + ticks(w->ListBox1, row);
        QTEST(shown.join(' '), "expected");
        QTEST(ticks(w->ListHeader, 0), "expectedHeader");
        QCOMPARE(w->ListHeader->SelCount(), 0);
        QCOMPARE(w->ListBox1->ListIndex(), int(listed().indexOf(at[0])));
        QCOMPARE(failures, 0);
    }

    // The row went before the timer fired: the action ends through the guard.
    void timerAfterTheRowWent()
    {
        listDirectly({"A"});
        QSignalSpy fired(w->Timer3, &OneShotTimer::Action);
        click(w->ListBox1, 0, 3, 10);
        w->ListBox1->DeleteAllRows();
        QVERIFY(fired.wait());
        QCOMPARE(failures, 1);
    }

    // A drop replaces the list and sorts it once, newest modification date first, and every
    // row shows without waiting, a pipe's or socket's as an empty pane. What cannot be
    // listed gets no row and is named in one report afterwards, at most 20 of it. A drop
    // without a file item as its first item, or a drag that leaves, changes nothing.
    void drop_data()
    {
        QTest::addColumn<QStringList>("items");  // a name in the folder, or a URL; a text comes with them
        QTest::addColumn<bool>("leaves");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<int>("selected");
        QTest::addColumn<QString>("report");
        const QStringList before{"earlier.jpg", "another.jpg"}, pictures{"old.jpg", "写真 と 空白.jpg", "new.jpg"};
        QTest::newRow("text") << QStringList{} << false << before << 1 << "";
        QTest::newRow("web link") << QStringList{"https://example.org/a.jpg"} << false << before << 1 << "";
        QTest::newRow("leaving") << pictures << true << before << 1 << "";
        QTest::newRow("pictures, one with a japanese name") << pictures << false << QStringList{"new.jpg", "写真 と 空白.jpg", "old.jpg"} << 0 << "";
        QTest::newRow("mixed; a folder lists itself only") << QStringList{"middle.txt", "old.jpg", "folder", "https://x.org/"} << false
                                                            << QStringList{"folder", "middle.txt", "old.jpg"} << 0 << "";
        QTest::newRow("a FIFO and a socket") << QStringList{"socket", "old.jpg", "fifo", "new.jpg"} << false
                                             << QStringList{"socket", "fifo", "new.jpg", "old.jpg"} << 0 << "";
        const QString longName(300, u'n');
        QTest::newRow("missing, a loop of links, a name too long") << QStringList{"gone.jpg", "old.jpg", "loop", longName, "new.jpg"}
            << false << QStringList{"new.jpg", "old.jpg"} << 0
            << "list every item: “gone.jpg” does not exist.\n“loop” is a loop of symbolic links.\n“" + longName.left(30) + "…"
                   + longName.left(30) + "”: the name is too long.";
        QStringList missing, named;
        for (int i = 1; i <= 22; ++i)
            named << QStringLiteral("“%1” does not exist.").arg(missing.emplaceBack(QString::number(i)));
        QTest::newRow("22 missing") << missing << false << QStringList{} << -1 << "list every item: " + named.mid(0, 20).join('\n') + "\n…and 2 more.";
    }
    void drop()
    {
        QFETCH(QStringList, items);
        QFETCH(bool, leaves);
        QFETCH(int, selected);
        listDirectly({"earlier.jpg", "another.jpg"});
        w->ListBox1->setListIndex(1);
        QMimeData mime;
        QList<QUrl> urls;
        for (const QString& item : items)
            urls << (item.startsWith("https:") ? QUrl(item) : QUrl::fromLocalFile(dir.filePath(item)));
        mime.setUrls(urls);
        mime.setText(QStringLiteral("some words"));
        const QPoint at = w->centralWidget()->mapTo(w, QPoint(300, 100));
        QDragEnterEvent enter(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(w->windowHandle(), &enter);
        QVERIFY(w->Winback->isVisible());
        QDropEvent dropped(at, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QDragLeaveEvent left;
        QCoreApplication::sendEvent(w->windowHandle(), leaves ? static_cast<QEvent*>(&left) : &dropped);
        QVERIFY(!w->Winback->isVisible());
        QTEST(listed(), "expected");
        QCOMPARE(w->ListBox1->ListIndex(), selected);
        QTEST(failures ? reported : QString(), "report");
        QVERIFY(failures <= 1);
        for (int row = 0; selected == 0 && row < w->ListBox1->ListCount(); ++row) {
            w->ListBox1->setListIndex(row);
            QTRY_COMPARE(w->Canvas1->Backdrop().isNull(), !listed()[row].endsWith(".jpg"));
        }
    }

    // A drop lists the same with its files read ahead as without: every text, tick and tag.
    void readAheadChangesNothing()
    {
        QVERIFY(::mkfifo(QFile::encodeName(dir.filePath("fifo")).constData(), 0600) == 0 || QFile::exists(dir.filePath("fifo")));
        QList<QUrl> urls;
        for (const char* name : {"old.jpg", "fifo", "写真 と 空白.jpg", "middle.txt", "all.jpg", "folder", "new.jpg"})
            urls << QUrl::fromLocalFile(dir.filePath(name));
        QStringList tables;
        for (const ReadAhead::Policy policy : {ReadAhead::Policy::Never, ReadAhead::Policy::Always}) {
            ReadAhead::setPolicy(policy);
            DragItem obj(urls);
            w->Event_DropObject(obj, 0);
            QString table;
            for (int row = 0; row < w->ListBox1->ListCount(); ++row) {
                table += ticks(w->ListBox1, row) + exifView(*w, row);
                for (int column = 0; column <= 2; ++column)
                    table += " | " + w->ListBox1->Cell(row, column);
            }
            tables << table;
        }
        ReadAhead::setPolicy(ReadAhead::Policy::WhenCold);
        QCOMPARE(w->ListBox1->ListCount(), urls.size());
        QCOMPARE(tables[1], tables[0]);
    }

    // Ticking prunes the rows whose file gives no picture, hidden until the walk is over;
    // unticking changes nothing. A row without its file ends the walk there: reported, the
    // rest kept, the box hidden.
    void onlyPicture_data()
    {
        QTest::addColumn<bool>("tick");
        QTest::addColumn<QStringList>("rows");
        QTest::addColumn<QStringList>("kept");
        const QStringList rows{"new.jpg", "middle.txt", "fifo", "old.jpg", "folder", "gone.jpg"};
        QTest::newRow("tick keeps pictures in order") << true << rows << QStringList{"new.jpg", "old.jpg"};
        QTest::newRow("untick") << false << rows << rows;
        QTest::newRow("a row without its file") << true << QStringList{"new.jpg", "", "middle.txt"} << QStringList{"new.jpg", ""};
    }
    void onlyPicture()
    {
        QFETCH(bool, tick);
        QFETCH(QStringList, rows);
        w->OnlyPicture->setChecked(!tick);
        QTRY_VERIFY(w->OnlyPicture->isVisible());
        listDirectly(rows);
        w->OnlyPicture->setChecked(tick);
        QVERIFY(!w->OnlyPicture->isVisible());
        QCOMPARE(listed(), rows);
        QTRY_VERIFY(w->OnlyPicture->isVisible() || failures > 0);
        QTEST(listed(), "kept");
        QCOMPARE(failures, int(rows.contains("")));
        QCOMPARE(w->OnlyPicture->isVisible(), failures == 0);
    }
};

QTEST_MAIN(TestTable)
#include "tst_table.moc"
