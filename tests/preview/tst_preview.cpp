// The preview pane (a picture fitted into its square, placed after a reduced decode off the
// event loop, nothing for a file that is no picture, never a picture of a row left) and
// the hover tag that shows a row's whole file name.

#include <QLineEdit>
#include <QtTest>

#include "platform/widgets/Canvas.h"
#include "platform/listbox/Listbox.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/pictures/PictureWorker.h"
#include "platform/pictures/ScaledPicture.h"
#include "shell/Window1.h"
#include "support/MadeFiles.h"
#include "support/TiffBuilder.h"

namespace {

QByteArray redPicture(QSize size, const char* format = "JPEG")
{
    QImage red(size, QImage::Format_RGB32);
    red.fill(Qt::red);
    QByteArray bytes;
    QBuffer b(&bytes);
    return b.open(QIODevice::WriteOnly) && red.save(&b, format, 95) ? bytes : QByteArray();
}

}  // namespace

class TestPreview : public QObject {
    Q_OBJECT
    QTemporaryDir dir;
    Window1* w = nullptr;

    // Selects a new row for the file and waits for its picture, or for the word that there
    // is none.
    QImage select(const QString& path)
    {
        QSignalSpy handed(w->previewWorker, &PictureWorker::handedBack);
        selectRowOf(path);
        return handed.wait() ? w->Canvas1->Backdrop() : QImage(1, 1, QImage::Format_Mono);
    }
    void selectRowOf(const QString& path)
    {
        const int row = w->ListBox1->ListCount();
        w->ListBox1->AddRow(QFileInfo(path).fileName());
        w->ListBox1->setCellTag(row, 0, QVariant::fromValue(FolderItem(path)));
        w->ListBox1->setCellTag(row, 6, 6);  // asks for a quarter turn
        w->ListBox1->setListIndex(row);
    }

private slots:
    void initTestCase()
    {
        w = Window1::instance();
        QVERIFY(QTest::qWaitForWindowExposed(w));
        QTRY_COMPARE(w->Timer4->Mode(), 0);  // the opening's sort has passed
        QVERIFY(writeBytes(dir.filePath("before"), redPicture(QSize(40, 30))));
        QVERIFY(writeBytes(dir.filePath("slow"), redPicture(QSize(40, 30))));
        QImage blue(40, 30, QImage::Format_RGB32);
        blue.fill(Qt::blue);
        QVERIFY(blue.save(dir.filePath("blue"), "JPEG"));
        QVERIFY(writeBytes(dir.filePath("text"), "no picture"));
    }

    // The pane shows the newest selection's picture and never one of a row that was left,
    // also where that picture comes later; a request not begun gives way to a newer one.
    // The first file's decode waits until the later selections are made.
    void newestWins_data()
    {
        QTest::addColumn<QStringList>("then");  // selected while "slow" is decoded; "": cleared
        QTest::addColumn<QStringList>("decoded");
        QTest::addColumn<bool>("blue");  // the pane ends with the blue picture, else empty
        QTest::newRow("no picture") << QStringList{"text"} << QStringList{"slow", "text"} << false;
        QTest::newRow("two pictures") << QStringList{"before", "blue"} << QStringList{"slow", "blue"} << true;
        QTest::newRow("the table cleared") << QStringList{""} << QStringList{"slow"} << false;
    }
    void newestWins()
    {
        QFETCH(QStringList, then);
        QFETCH(QStringList, decoded);
        QFETCH(bool, blue);
        QSemaphore started, go;
        QStringList seen;  // written by the worker, read after its pictures came back
        setPictureDecoder([&](const FolderItem& f, QSize box) {
            seen << f.Name();
            if (f.Name() == "slow") {
                started.release();
                go.acquire();
            }
            return openScaledPicture(f, box);
        });
        w->ListBox1->DeleteAllRows();
        QSignalSpy handed(w->previewWorker, &PictureWorker::handedBack);
        selectRowOf(dir.filePath("slow"));
        started.acquire();
        for (const QString& name : then)
            name.isEmpty() ? w->clearTables() : selectRowOf(dir.filePath(name));
        const quint64 version = w->Canvas1->backdropVersion();
        go.release();
        QTRY_COMPARE(handed.count(), decoded.size());
        setPictureDecoder({});
        QCOMPARE(seen, decoded);
        QCOMPARE(w->Canvas1->backdropVersion() - version, quint64(blue));  // "slow" never drawn
        QCOMPARE(w->Canvas1->Backdrop().isNull(), !blue);
        if (blue)
            QVERIFY(qBlue(w->Canvas1->Backdrop().pixel(100, 100)) > 200);
    }

    // Selected after a picture: decoded at a reduced scale (or a HEIF file's thumbnail), a picture still lands at its stored size times fitted width over
    // stored width, centred, and unturned whatever its orientation code says. A truncated JPEG shows what decodes; what is no picture leaves
    // the pane empty.
    void picture_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("decodedWidth");  // -1: the pane stays empty; 0: not looked at
        QTest::addColumn<QRectF>("drawn");
        const QByteArray jpeg = redPicture(QSize(640, 480));
        QTest::newRow("landscape, an eighth") << redPicture({1600, 1200}) << 200 << QRectF(0, 25, 200, 150);
        QTest::newRow("portrait, an eighth") << redPicture({1200, 1600}) << 150 << QRectF(25, 0, 150, 200);
        QTest::newRow("enlarged twice, whole") << redPicture({50, 100}) << 50 << QRectF(50, 0, 100, 200);
        QTest::newRow("width truncated, sets the scale") << redPicture({3, 400}) << 1 << QRectF(99.5, 33.3, 1, 133.3);
        QTest::newRow("one pixel wide draws nothing") << redPicture({1, 4000}) << 1 << QRectF();
        QTest::newRow("tiff") << redPicture({64, 48}, "TIFF") << 64 << QRectF(0, 25, 200, 150);
        const QImage red = QImage::fromData(redPicture({1600, 1200}));
        QTest::newRow("heic by its thumbnail") << heifEncoded(red, {"-q", "90", "-t", "320"}) << 320 << QRectF(0, 25, 200, 150);
        QTest::newRow("truncated jpeg") << jpeg.left(jpeg.size() / 2) << 0 << QRectF();
        QTest::newRow("jpeg header only") << jpeg.left(300) << -1 << QRectF();
        QTest::newRow("corrupt tiff") << QByteArray::fromHex("49492a0008000000ffff010103") + QByteArray(200, '\xee')
                                      << -1 << QRectF();
        QTest::newRow("text file") << QByteArray("just some words\n") << -1 << QRectF();
    }
    void picture()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, decodedWidth);
        QFETCH(QRectF, drawn);
        const QString file = dir.filePath(QTest::currentDataTag());
        QVERIFY(writeBytes(file, content));
        if (decodedWidth > 0)
            QCOMPARE(openScaledPicture(file, QSize(200, 200)).image.width(), decodedWidth);
        w->ListBox1->DeleteAllRows();
        QVERIFY(!select(dir.filePath("before")).isNull());
        const QImage b = select(file);
        QCOMPARE(b.isNull(), decodedWidth < 0);
        // Sampled every 3 pixels, with 2 pixels of slack at the edges.
        const QRectF inner = drawn.adjusted(2, 2, -2, -2), outer = drawn.adjusted(-2, -2, 2, 2);
        QList<QPoint> wrong;
        for (int y = 1; decodedWidth > 0 && y < 200; y += 3)
            for (int x = 1; x < 200; x += 3) {
                const QRgb c = b.pixel(x, y);
                if (inner.isValid() && inner.contains(x, y) ? qRed(c) < 240 || qGreen(c) > 16 || qBlue(c) > 16
                                                            : !outer.contains(x, y) && c != qRgb(255, 255, 255))
                    wrong << QPoint(x, y);
            }
        QCOMPARE(wrong.value(0, QPoint(-1, -1)), QPoint(-1, -1));  // the first pixel out of place
    }

    // Real pointer moves over a table 830 wide: rows counted at 15 pixels below a 15-pixel
    // header, the first quarter of the width. The tag stands 5 pixels off the pointer, 9
    // pixels wide for a one-byte character, 12 for two bytes, 15 for three, plus 20.
    void hoverTag_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<int>("scroll");
        QTest::addColumn<QPoint>("at");
        QTest::addColumn<int>("shownRow");  // -1: hidden
        QTest::addColumn<int>("width");
        const QStringList five = {"IMG_0001.JPG", "写真.jpg", "éèàç", "d", "e"}, two = five.mid(0, 2);
        QTest::newRow("y 16 is the first row") << five << 0 << QPoint(10, 16) << 0 << 128;
        QTest::newRow("y 46 is row 2") << five << 0 << QPoint(10, 46) << 2 << 68;
        QTest::newRow("x at the limit") << five << 0 << QPoint(207, 20) << -1 << 0;
        QTest::newRow("x one below the limit, last row") << two << 0 << QPoint(206, 44) << 1 << 86;
        QTest::newRow("below the last row") << two << 0 << QPoint(10, 50) << -1 << 0;
    }
    void hoverTag()
    {
        QFETCH(QStringList, names);
        QFETCH(QPoint, at);
        QFETCH(int, shownRow);
        QFETCH(int, scroll);
        w->ListBox1->DeleteAllRows();
        for (const QString& name : names)
            w->ListBox1->AddRow(name);
        w->ListBox1->setScrollPosition(scroll);
        w->FileNameTag->setVisible(true);  // a move that doesn't show it hides it
        QWidget* view = w->ListBox1->viewport();
        QTest::mouseMove(view, at - view->mapTo(w->ListBox1, QPoint(0, 0)));
        QTRY_COMPARE(w->FileNameTag->isVisible(), shownRow >= 0);
        if (shownRow < 0)
            return;
        QCOMPARE(w->FileNameTag->text(), names[shownRow]);
        QCOMPARE(w->FileNameTag->font().pixelSize(), 12);
        QTEST(w->FileNameTag->width(), "width");
        QCOMPARE(w->FileNameTag->height(), 22);
        QCOMPARE(w->FileNameTag->mapTo(w, QPoint(0, 0)), w->ListBox1->mapTo(w, at + QPoint(5, 5)));
        QTest::mouseMove(w, w->ListBox1->mapTo(w, QPoint(-10, -10)));
        QTRY_VERIFY(!w->FileNameTag->isVisible());
    }

    // Pointer moves as the desktop delivers them, up a scrolled table from its last visible
    // row to the top of the header: the tag names the row under the pointer on every
    // pixel of every row, and goes at y 15, the first row's top edge, and over the header
    // (also when the pointer comes there straight from a row).
    void hoverTagNamesTheRowUnderThePointer()
    {
        w->ListBox1->DeleteAllRows();
        for (int i = 0; i < 40; ++i)
            w->ListBox1->AddRow(QString::number(i));
        w->ListBox1->setScrollPosition(7);
        const auto moveTo = [&](int y) { QTest::mouseMove(w->windowHandle(), w->ListBox1->mapTo(w, QPoint(10, y))); };
        const int top = w->ListBox1->viewport()->mapTo(w->ListBox1, QPoint()).y();
        for (int y = top + w->ListBox1->viewport()->height() - 1; y >= 1; --y) {
            moveTo(y);
            QCOMPARE(w->FileNameTag->isVisible() ? w->FileNameTag->text() : "none",
                     y <= 15 ? "none" : QString::number(w->ListBox1->rowAt(y - top)));
        }
        moveTo(16), moveTo(8);  // from the first row straight into the header
        QVERIFY(!w->FileNameTag->isVisible());
    }
};

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
