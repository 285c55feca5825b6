// A file given to addFileToTable becomes a complete row: name, file dates, Exif dates with
// their tags, and the ticks of a new row; what is not taken leaves everything as it was.
#include <QtTest>

#include <QCheckBox>
#include <QLocalServer>

#include "platform/Canvas.h"
#include "platform/FolderItem.h"
#include "platform/Listbox.h"
#include "shell/Window1.h"
#include "support/RowView.h"
#include "support/TiffBuilder.h"

#include <memory>

namespace {

const QByteArray A = "2011:01:02 03:04:05", B = "2012:02:03 04:05:06", C = "2013:03:04 05:06:07";

// A JPEG with all three dates, or with the shooting date only.
QByteArray exifJpeg(bool allDates)
{
    TiffBuilder t(false);
    const int ifd0 = t.directory(), exif = t.directory();
    if (allDates)
        t.ascii(ifd0, 306, A);
    t.link(ifd0, 34665, exif);
    t.ascii(exif, 36867, B);
    if (allDates)
        t.ascii(exif, 36868, C);
    return TiffBuilder::jpeg(t.bytes());
}

// Boxes of a row, columns 0 to 5: 'x' ticked, '.' not.
QString ticks(const Listbox* table, int row)
{
    QString out;
    for (int column = 0; column <= 5; ++column)
        out += table->CellCheck(row, column) ? 'x' : '.';
    return out;
}

}  // namespace

class TestFileTable : public QObject {
    Q_OBJECT
    QTemporaryDir tmp;
    std::unique_ptr<Window1> w;
    QLocalServer socket;  // a file that no stream can open

    QString file(const QString& name, const QByteArray& content)
    {
        const QString path = tmp.filePath(name);
        writeBytes(path, content);
        return path;
    }

private slots:
    void initTestCase()
    {
        w = std::make_unique<Window1>();
        QVERIFY(socket.listen(tmp.filePath(QStringLiteral("socket"))));
        QDir(tmp.path()).mkdir(QStringLiteral("folder"));
    }

    void init()
    {
        w->clearTables();
        for (int column = 0; column <= 5; ++column)
            w->ListHeader->setCellCheck(0, column, true);
        const QSignalBlocker quiet(w->OnlyPicture);
        w->OnlyPicture->setChecked(false);
    }

    void tablesOpen()
    {
        for (int column = 0; column <= 6; ++column) {
            QCOMPARE(w->ListBox1->ColumnType(column) == 2, column < 6);
            QCOMPARE(w->ListHeader->ColumnType(column) == 2, column < 6);
        }
        QCOMPARE(ticks(w->ListHeader, 0), QStringLiteral("xxxxxx"));
    }

    void row_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QStringList>("seen");
        QTest::addColumn<QString>("ticks");
        QTest::addColumn<bool>("stream");

        const QByteArray all = exifJpeg(true), one = exifJpeg(false);
        QTest::newRow("all three dates") << file("all.jpg", all) << view(dateAt(all, A), dateAt(all, B), dateAt(all, C)) << "xxxxxx" << true;
        QTest::newRow("shooting date only") << file("one.jpg", one) << view(noDate(), dateAt(one, B), noDate()) << "xxx.x." << true;
        QTest::newRow("no Exif") << file("plain.txt", "just text") << view(noDate(), noDate(), noDate()) << "xxx..." << true;
        QTest::newRow("empty file") << file("empty", {}) << view(noDate(), noDate(), noDate()) << "xxx..." << true;
        QTest::newRow("folder") << tmp.filePath("folder") << view(noDate(), noDate(), noDate()) << "xxx..." << false;
        QTest::newRow("can't be opened") << tmp.filePath("socket") << view(noDate(), noDate(), noDate()) << "xxx..." << false;
    }

    void row()
    {
        QFETCH(QString, path);
        QFETCH(QStringList, seen);
        QFETCH(QString, ticks);
        QFETCH(bool, stream);
        const FolderItem f(path);
        w->addFileToTable(f);

        QCOMPARE(w->ListBox1->ListCount(), 1);
        QCOMPARE(w->curRow, 0);
        QCOMPARE(w->ListBox1->Cell(0, 0), f.Name());
        QCOMPARE(w->ListBox1->CellTag(0, 0).value<FolderItem>(), f);
        QCOMPARE(w->ListBox1->Cell(0, 1), f.CreationDate().SQLDateTime());
        QCOMPARE(w->ListBox1->Cell(0, 2), f.ModificationDate().SQLDateTime());
        QCOMPARE(w->ListBox1->CellTag(0, 2).value<Date>(), f.ModificationDate());
        QCOMPARE(exifView(*w, 0), seen);
        QCOMPARE(::ticks(w->ListBox1, 0), ticks);
        QCOMPARE(!w->bs.isNil(), stream);
        QVERIFY(w->ListBox1->Cell(0, 6).isEmpty());
    }

    void headerBoxes_data()
    {
        QTest::addColumn<QString>("header");
        QTest::addColumn<QString>("ticks");
        QTest::newRow("all ticked") << "xxxxxx" << "xxxxxx";
        QTest::newRow("corner unticked") << ".xxxxx" << ".xxxxx";
        QTest::newRow("one date column unticked") << "xxxx.x" << "xxxx.x";
        QTest::newRow("file dates unticked") << "x..xxx" << "x..xxx";
        QTest::newRow("none ticked") << "......" << "......";
    }

    // New rows take their ticks from the header boxes; the boxes themselves don't change.
    void headerBoxes()
    {
        QFETCH(QString, header);
        QFETCH(QString, ticks);
        for (int column = 0; column <= 5; ++column)
            w->ListHeader->setCellCheck(0, column, header[column] == 'x');
        w->addFileToTable(FolderItem(file("all.jpg", exifJpeg(true))));
        w->addFileToTable(FolderItem(file("one.jpg", exifJpeg(false))));
        QCOMPARE(::ticks(w->ListBox1, 0), ticks);
        QString withMarkers = ticks;
        withMarkers[3] = withMarkers[5] = '.';
        QCOMPARE(::ticks(w->ListBox1, 1), withMarkers);
        QCOMPARE(::ticks(w->ListHeader, 0), header);
    }

    void notTaken_data()
    {
        QTest::addColumn<QString>("path");  // empty: a nil item
        QTest::addColumn<bool>("onlyPicture");
        QTest::addColumn<bool>("taken");
        QImage(8, 8, QImage::Format_RGB32).save(tmp.filePath("picture.png"));
        QTest::newRow("nil") << QString() << false << false;
        QTest::newRow("only pictures, not a picture") << file("one.jpg", exifJpeg(false)) << true << false;
        QTest::newRow("only pictures, a folder") << tmp.filePath("folder") << true << false;
        QTest::newRow("only pictures, a picture") << tmp.filePath("picture.png") << true << true;
        QTest::newRow("anything, not a picture") << file("one.jpg", exifJpeg(false)) << false << true;
    }

    // What is not taken adds no row and leaves curRow and bs as they were.
    void notTaken()
    {
        QFETCH(QString, path);
        QFETCH(bool, onlyPicture);
        QFETCH(bool, taken);
        w->addFileToTable(FolderItem(file("first.jpg", exifJpeg(true))));
        const Handle<BinaryStream> before = w->bs;
        w->curRow = 42;
        {
            const QSignalBlocker quiet(w->OnlyPicture);
            w->OnlyPicture->setChecked(onlyPicture);
        }
        w->addFileToTable(path.isEmpty() ? FolderItem() : FolderItem(path));
        QCOMPARE(w->ListBox1->ListCount(), taken ? 2 : 1);
        QCOMPARE(w->curRow, taken ? 1 : 42);
        QCOMPARE(w->bs == before, !taken);
    }

    // The open-document path may list a file twice: two rows that share nothing but the file.
    void sameFileTwice()
    {
        const QString path = file("twice.jpg", exifJpeg(true));
        w->addFileToTable(FolderItem(path));
        w->addFileToTable(FolderItem(path));
        QCOMPARE(w->ListBox1->ListCount(), 2);
        QCOMPARE(exifView(*w, 1), exifView(*w, 0));
        w->ListBox1->setCellCheck(0, 4, false);
        w->ListBox1->setCellTag(0, 3, QVariant(1.0));
        QVERIFY(w->ListBox1->CellCheck(1, 4));
        QCOMPARE(w->ListBox1->CellTag(1, 3), QVariant(double(exifJpeg(true).indexOf(A))));
    }

    void clearEmptiesTableAndPreviewOnly()
    {
        w->ListHeader->setCellCheck(0, 2, false);
        w->addFileToTable(FolderItem(file("all.jpg", exifJpeg(true))));
        w->addFileToTable(FolderItem(file("one.jpg", exifJpeg(false))));
        const Handle<BinaryStream> stream = w->bs;
        QImage picture(4, 4, QImage::Format_RGB32);
        picture.fill(Qt::red);
        w->Canvas1->setBackdrop(picture);
        w->clearTables();
        QCOMPARE(w->ListBox1->ListCount(), 0);
        QVERIFY(w->Canvas1->Backdrop().isNull());
        QCOMPARE(ticks(w->ListHeader, 0), QStringLiteral("xx.xxx"));
        QVERIFY(w->bs == stream);
        QCOMPARE(w->curRow, 1);
    }
};

QTEST_MAIN(TestFileTable)
#include "tst_filetable.moc"
