// The preview pane: fitting, placement, reduced decoding and files that are no picture.

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/Canvas.h"
#include "platform/Listbox.h"
#include "platform/OneShotTimer.h"
#include "platform/ScaledPicture.h"
#include "shell/Window1.h"

class TestPreview : public QObject {
    Q_OBJECT
    QTemporaryDir dir;

    QString path(const QString& name) const { return dir.filePath(name); }

    // One row whose first cell tag is the file, as the table keeps it.
    int addRow(Window1& w, const QString& file)
    {
        w.ListBox1->AddRow(QFileInfo(file).fileName());
        const int row = w.ListBox1->ListCount() - 1;
        w.ListBox1->setCellTag(row, 0, QVariant::fromValue(FolderItem(file)));
        return row;
    }

    static QImage solid(int width, int height, QColor colour)
    {
        QImage i(width, height, QImage::Format_RGB32);
        i.fill(colour);
        return i;
    }

    // A busy picture, so that a reduced decode that goes wrong shows.
    static QImage pattern(int width, int height)
    {
        QImage i(width, height, QImage::Format_RGB32);
        QPainter p(&i);
        QLinearGradient g(0, 0, width, height);
        g.setColorAt(0, Qt::blue);
        g.setColorAt(1, Qt::yellow);
        p.fillRect(i.rect(), g);
        p.fillRect(QRect(width / 4, height / 4, width / 8, height / 2), Qt::red);
        return i;
    }

    static bool isRed(QRgb c) { return qRed(c) > 200 && qGreen(c) < 60 && qBlue(c) < 60; }
    static bool isWhite(QRgb c) { return qRed(c) > 240 && qGreen(c) > 240 && qBlue(c) > 240; }

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
        QTest::newRow("twenty thousand by one") << 20000 << 1 << QList<int>{200, 0, 0, 100};
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

    // The picture lands centred at its stored size times fitted width / stored width.
    void placement_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QRectF>("drawn");
        QTest::newRow("landscape") << QSize(400, 300) << QRectF(0, 25, 200, 150);
        QTest::newRow("portrait") << QSize(300, 400) << QRectF(25, 0, 150, 200);
        QTest::newRow("square") << QSize(100, 100) << QRectF(0, 0, 200, 200);
        QTest::newRow("enlarged twice") << QSize(50, 100) << QRectF(50, 0, 100, 200);
        QTest::newRow("scale from width only") << QSize(333, 1000) << QRectF(67, 100 - 99.099, 66, 198.198);
    }
    void placement()
    {
        QFETCH(QSize, size);
        QFETCH(QRectF, drawn);
        const QString file = path(QStringLiteral("solid.png"));
        QVERIFY(solid(size.width(), size.height(), Qt::red).save(file));
        Window1 win;
        const int row = addRow(win, file);
        win.ListBox1->setCellTag(row, 6, 6);  // an orientation that asks for a turn is ignored
        win.drawCanvas(row);
        const QImage b = win.Canvas1->Backdrop();
        QCOMPARE(b.size(), QSize(200, 200));
        for (int y = 1; y < 200; y += 3)
            for (int x = 1; x < 200; x += 3) {
                const QRgb c = b.pixel(x, y);
                if (drawn.adjusted(2, 2, -2, -2).contains(x, y))
                    QVERIFY2(isRed(c), qPrintable(QStringLiteral("inside at %1,%2").arg(x).arg(y)));
                else if (!drawn.adjusted(-2, -2, 2, 2).contains(x, y))
                    QVERIFY2(isWhite(c), qPrintable(QStringLiteral("outside at %1,%2").arg(x).arg(y)));
            }
    }

    void reducedDecoding_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QByteArray>("format");
        QTest::addColumn<int>("decodedWidth");
        QTest::newRow("jpeg at an eighth") << QSize(1600, 1200) << QByteArray("JPEG") << 200;
        QTest::newRow("jpeg at a quarter") << QSize(1000, 800) << QByteArray("JPEG") << 250;
        QTest::newRow("jpeg too small to reduce") << QSize(300, 200) << QByteArray("JPEG") << 300;
        QTest::newRow("tall jpeg reduced by its height") << QSize(800, 1700) << QByteArray("JPEG") << 100;
        QTest::newRow("png is decoded whole") << QSize(1600, 1200) << QByteArray("PNG") << 1600;
        QTest::newRow("one pixel wide jpeg") << QSize(1, 4000) << QByteArray("JPEG") << 1;
    }
    // Decoded small, drawn the same: size and place as scaling the whole picture gives.
    void reducedDecoding()
    {
        QFETCH(QSize, size);
        QFETCH(QByteArray, format);
        QFETCH(int, decodedWidth);
        const QString file = path(QStringLiteral("pattern.") + QString::fromLatin1(format).toLower());
        const QImage original = pattern(size.width(), size.height());
        QVERIFY(original.save(file, format.constData(), 95));

        const ScaledPicture p = openScaledPicture(file, QSize(200, 200));
        QCOMPARE(p.fullSize, size);
        QCOMPARE(p.image.width(), decodedWidth);

        Window1 win;
        win.drawCanvas(addRow(win, file));
        const QImage shown = win.Canvas1->Backdrop().convertToFormat(QImage::Format_RGB32);
        QImage whole(200, 200, QImage::Format_RGB32);
        whole.fill(Qt::white);
        {
            QPainter painter(&whole);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            const int fittedWidth = size.height() > size.width() ? 200 * size.width() / size.height() : 200;
            const double s = double(fittedWidth) / size.width();
            const QSizeF d(size.width() * s, size.height() * s);
            painter.drawImage(QRectF(QPointF(100 - d.width() / 2, 100 - d.height() / 2), d), QImage(file));
        }
        qint64 diff = 0;
        for (int y = 0; y < 200; ++y)
            for (int x = 0; x < 200; ++x) {
                const QRgb a = shown.pixel(x, y), b = whole.pixel(x, y);
                diff += qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) + qAbs(qBlue(a) - qBlue(b));
            }
        QVERIFY2(diff / (200.0 * 200 * 3) < 2.0, qPrintable(QString::number(diff / (200.0 * 200 * 3))));
    }

    // What isn't a picture leaves the pane as the caller left it: empty.
    void noPicture_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("shows");
        QByteArray jpeg;
        {
            QBuffer b(&jpeg);
            b.open(QIODevice::WriteOnly);
            pattern(640, 480).save(&b, "JPEG");
        }
        QTest::newRow("text file") << QByteArray("just some words\n") << false;
        QTest::newRow("empty file") << QByteArray() << false;
        QTest::newRow("corrupt tiff") << QByteArray::fromHex("49492a0008000000ffff010103") + QByteArray(200, '\xee')
                                      << false;
        QTest::newRow("jpeg header only") << jpeg.left(300) << false;
        QTest::newRow("truncated jpeg shows its top") << jpeg.left(jpeg.size() / 2) << true;
    }
    void noPicture()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, shows);
        const QString file = path(QStringLiteral("odd.jpg"));
        QFile f(file);
        QVERIFY(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(content);
        f.close();
        Window1 win;
        win.drawCanvas(addRow(win, file));
        QCOMPARE(!win.Canvas1->Backdrop().isNull(), shows);
    }

    // Selecting a row shows its picture; moving on to a file without one empties the pane.
    void selectionChange()
    {
        const QString picture = path(QStringLiteral("picture.png"));
        const QString text = path(QStringLiteral("notes.txt"));
        QVERIFY(solid(40, 30, Qt::red).save(picture));
        QFile f(text);
        QVERIFY(f.open(QIODevice::WriteOnly) && f.write("words") == 5);
        f.close();
        Window1 win;
        QTRY_COMPARE(win.Timer4->Mode(), 0);  // the opening's sort has passed
        addRow(win, picture);
        addRow(win, text);
        win.ListBox1->setListIndex(0);
        QVERIFY(!win.Canvas1->Backdrop().isNull());
        win.ListBox1->setListIndex(1);
        QVERIFY(win.Canvas1->Backdrop().isNull());
        win.ListBox1->setListIndex(0);
        QVERIFY(!win.Canvas1->Backdrop().isNull());
        win.ListBox1->setListIndex(-1);
        QVERIFY(win.Canvas1->Backdrop().isNull());
    }

    void rowWithoutFileIsSkipped()
    {
        Window1 win;
        win.ListBox1->AddRow(QStringLiteral("no file"));
        win.ListBox1->setCellTag(0, 0, QStringLiteral("not a file"));
        win.drawCanvas(0);
        QVERIFY(win.Canvas1->Backdrop().isNull());
    }
};

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
