// The preview pane: fitting, placement after a reduced decode, and files that are no picture.

#include <QTemporaryDir>
#include <QtTest>

#include "platform/Canvas.h"
#include "platform/Listbox.h"
#include "platform/OneShotTimer.h"
#include "platform/ScaledPicture.h"
#include "shell/Window1.h"

namespace {

// One row whose first cell tag is the file, as the table keeps it.
int addRow(Window1& w, const QString& file)
{
    w.ListBox1->AddRow(QFileInfo(file).fileName());
    const int row = w.ListBox1->ListCount() - 1;
    w.ListBox1->setCellTag(row, 0, QVariant::fromValue(FolderItem(file)));
    return row;
}

QString writeFile(const QTemporaryDir& dir, const QByteArray& content, const char* name = "file")
{
    QFile f(dir.filePath(QString::fromLatin1(name)));
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(content) == content.size() ? f.fileName()
                                                                                                : QString();
}

QByteArray redPicture(QSize size, const char* format = "JPEG")
{
    QImage red(size, QImage::Format_RGB32);
    red.fill(Qt::red);
    QByteArray bytes;
    QBuffer b(&bytes);
    b.open(QIODevice::WriteOnly);
    red.save(&b, format, 95);
    return bytes;
}

}  // namespace

class TestPreview : public QObject {
    Q_OBJECT
    QTemporaryDir dir;

private slots:
    void fitting_data()
    {
        QTest::addColumn<int>("w");
        QTest::addColumn<int>("h");
        QTest::addColumn<QList<int>>("fitted");  // box width, box height, offset x, offset y
        QTest::newRow("landscape 4000x3000") << 4000 << 3000 << QList<int>{200, 150, 0, 25};
        QTest::newRow("portrait 3000x4000") << 3000 << 4000 << QList<int>{150, 200, 25, 0};
        QTest::newRow("square takes the wide branch") << 1000 << 1000 << QList<int>{200, 200, 0, 0};
        QTest::newRow("small tall is enlarged") << 50 << 100 << QList<int>{100, 200, 50, 0};
        QTest::newRow("truncated width, rounded-down offset") << 333 << 1000 << QList<int>{66, 200, 67, 0};
        QTest::newRow("one by twenty thousand") << 1 << 20000 << QList<int>{0, 200, 100, 0};
    }
    void fitting()
    {
        QFETCH(int, w);
        QFETCH(int, h);
        QFETCH(QList<int>, fitted);
        Window1 win;
        int bw = 200, bh = 200, ox = -1, oy = -1;
        win.optimizePictureSize(w, h, bw, bh, ox, oy);
        QCOMPARE((QList<int>{bw, bh, ox, oy}), fitted);
    }

    // Decoded at a reduced scale, a picture still lands at its stored size times fitted width
    // over stored width, centred, and unturned whatever its orientation code says.
    void placement_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("decodedWidth");
        QTest::addColumn<QRectF>("drawn");
        QTest::newRow("landscape, an eighth") << QSize(1600, 1200) << 200 << QRectF(0, 25, 200, 150);
        QTest::newRow("portrait, an eighth") << QSize(1200, 1600) << 150 << QRectF(25, 0, 150, 200);
        QTest::newRow("square, a quarter") << QSize(800, 800) << 200 << QRectF(0, 0, 200, 200);
        QTest::newRow("enlarged twice, whole") << QSize(50, 100) << 50 << QRectF(50, 0, 100, 200);
        QTest::newRow("scale from width only") << QSize(333, 1000) << 83 << QRectF(67, 0.9, 66, 198.2);
        QTest::newRow("one pixel wide draws nothing") << QSize(1, 4000) << 1 << QRectF();
    }
    void placement()
    {
        QFETCH(QSize, size);
        QFETCH(int, decodedWidth);
        QFETCH(QRectF, drawn);
        const QString file = writeFile(dir, redPicture(size));
        const ScaledPicture reduced = openScaledPicture(file, QSize(200, 200));
        QCOMPARE(reduced.fullSize, size);
        QCOMPARE(reduced.image.width(), decodedWidth);

        Window1 w;
        const int row = addRow(w, file);
        w.ListBox1->setCellTag(row, 6, 6);  // asks for a quarter turn
        w.drawCanvas(row);
        const QImage b = w.Canvas1->Backdrop();
        QCOMPARE(b.size(), QSize(200, 200));
        for (int y = 1; y < 200; y += 3)
            for (int x = 1; x < 200; x += 3) {
                const QRgb c = b.pixel(x, y);
                const bool red = qRed(c) > 240 && qGreen(c) < 16 && qBlue(c) < 16;
                if (!drawn.isEmpty() && drawn.adjusted(2, 2, -2, -2).contains(x, y))
                    QVERIFY2(red, qPrintable(QStringLiteral("inside at %1,%2").arg(x).arg(y)));
                else if (!drawn.adjusted(-2, -2, 2, 2).contains(x, y))
                    QVERIFY2(c == qRgb(255, 255, 255), qPrintable(QStringLiteral("outside at %1,%2").arg(x).arg(y)));
            }
    }

    // What isn't a picture leaves the pane empty; a TIFF shows, a truncated JPEG what decodes.
    void badFiles_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("shows");
        const QByteArray jpeg = redPicture(QSize(640, 480));
        QTest::newRow("text file") << QByteArray("just some words\n") << false;
        QTest::newRow("empty file") << QByteArray() << false;
        QTest::newRow("corrupt tiff") << QByteArray::fromHex("49492a0008000000ffff010103") + QByteArray(200, '\xee')
                                      << false;
        QTest::newRow("jpeg header only") << jpeg.left(300) << false;
        QTest::newRow("truncated jpeg") << jpeg.left(jpeg.size() / 2) << true;
        QTest::newRow("tiff") << redPicture(QSize(64, 48), "TIFF") << true;
    }
    void badFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, shows);
        Window1 w;
        w.drawCanvas(addRow(w, writeFile(dir, content)));
        QCOMPARE(!w.Canvas1->Backdrop().isNull(), shows);
    }

    // Selecting a row shows its picture; moving on to a file without one empties the pane.
    void selectionChange()
    {
        Window1 w;
        QTRY_COMPARE(w.Timer4->Mode(), 0);  // the opening's sort has passed
        addRow(w, writeFile(dir, "words", "notes.txt"));
        addRow(w, writeFile(dir, redPicture(QSize(40, 30)), "picture.jpg"));
        for (const int row : {1, 0, 1, -1}) {
            w.ListBox1->setListIndex(row);
            QCOMPARE(w.Canvas1->Backdrop().isNull(), row != 1);
        }
    }
};

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
