#include "platform/Canvas.h"
#include "platform/HandlerGuard.h"
#include "platform/LockLayout.h"
#include "platform/OneShotTimer.h"
#include "platform/Shapes.h"

#include <QGroupBox>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include <stdexcept>

namespace {

// Pixels as drawn on a blue ground, so that what a widget leaves transparent reads blue.
const QColor kGround(0, 0, 255);

QImage rendered(QWidget& w)
{
    QImage image(w.size(), QImage::Format_ARGB32);
    image.fill(kGround);
    w.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// Closes the first message box that shows and keeps what it said.
class MessageBoxCatcher : public QObject {
public:
    QString text;
    QString informative;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    int shown = 0;

protected:
    bool eventFilter(QObject* o, QEvent* e) override
    {
        if (e->type() == QEvent::Show) {
            if (auto* box = qobject_cast<QMessageBox*>(o)) {
                ++shown;
                text = box->text();
                informative = box->informativeText();
                icon = box->icon();
                QMetaObject::invokeMethod(box, "accept", Qt::QueuedConnection);
            }
        }
        return false;
    }
};

}  // namespace

class TestWidgets : public QObject {
    Q_OBJECT
private slots:
    void timerFiresOnce_data();
    void timerFiresOnce();
    void timerMayBeArmedFromItsAction();
    void lockRectangles_data();
    void lockRectangles();
    void lockLayoutPlacesWidgets();
    void guardHandsFailuresToTheReport_data();
    void guardHandsFailuresToTheReport();
    void defaultReportIsAWarningDialog();
    void canvasShowsItsBackdrop();
    void rectangleIsAFrame_data();
    void rectangleIsAFrame();
    void roundRectangleLook();
};

// ---- timers -------------------------------------------------------------------------------

void TestWidgets::timerFiresOnce_data()
{
    QTest::addColumn<int>("arms");
    QTest::addColumn<bool>("thenOff");
    QTest::addColumn<int>("firings");
    QTest::newRow("armed once") << 1 << false << 1;
    QTest::newRow("armed twice while pending") << 2 << false << 1;
    QTest::newRow("armed five times") << 5 << false << 1;
    QTest::newRow("armed, then turned off") << 1 << true << 0;
    QTest::newRow("never armed") << 0 << false << 0;
}

void TestWidgets::timerFiresOnce()
{
    QFETCH(int, arms);
    QFETCH(bool, thenOff);
    QFETCH(int, firings);
    OneShotTimer timer;
    QCOMPARE(timer.Period(), 10);
    QCOMPARE(timer.Mode(), 0);
    QSignalSpy action(&timer, &OneShotTimer::Action);
    for (int i = 0; i < arms; ++i)
        timer.setMode(1);
    QCOMPARE(timer.Mode(), arms > 0 ? 1 : 0);
    if (thenOff)
        timer.setMode(0);

    // A later timer marks the end of the wait: by then every firing has happened.
    OneShotTimer later;
    later.setPeriod(60);
    QSignalSpy end(&later, &OneShotTimer::Action);
    later.setMode(1);
    QVERIFY(end.wait(2000));
    QCOMPARE(action.count(), firings);
    QCOMPARE(timer.Mode(), 0);
}

void TestWidgets::timerMayBeArmedFromItsAction()
{
    OneShotTimer timer;
    int firings = 0;
    int modeInside = -1;
    connect(&timer, &OneShotTimer::Action, this, [&] {
        modeInside = timer.Mode();
        if (++firings == 1)
            timer.setMode(1);
    });
    timer.setMode(1);
    QTRY_COMPARE(firings, 2);
    QCOMPARE(modeInside, 0);
}

// ---- lock layout --------------------------------------------------------------------------

void TestWidgets::lockRectangles_data()
{
    QTest::addColumn<QRect>("design");
    QTest::addColumn<QString>("locks");
    QTest::addColumn<QSize>("content");
    QTest::addColumn<QRect>("expected");
    const QSize design(870, 520), big(1000, 700), minimum(680, 380);
    const QRect list(20, 268, 830, 212), strip(20, 244, 830, 20), text(245, 20, 180, 209);
    const QRect aim(435, 180, 415, 55), only(337, 486, 500, 20), clear(545, 118, 50, 14), image(20, 17, 215, 215);
    QTest::newRow("table at design size") << list << "LTRB" << design << list;
    QTest::newRow("table at 1000x700") << list << "LTRB" << big << QRect(20, 268, 960, 392);
    QTest::newRow("table at minimum") << list << "LTRB" << minimum << QRect(20, 268, 640, 72);
    QTest::newRow("strip LR at 1000x700") << strip << "LR" << big << QRect(20, 244, 960, 20);
    QTest::newRow("text area at minimum shrinks away") << text << "LR" << minimum << QRect(245, 20, -10, 209);
    QTest::newRow("group R at minimum") << aim << "R" << minimum << QRect(245, 180, 415, 55);
    QTest::newRow("group R at 1000x700") << aim << "R" << big << QRect(565, 180, 415, 55);
    QTest::newRow("check box RB at minimum") << only << "RB" << minimum << QRect(147, 346, 500, 20);
    QTest::newRow("button TR at 1000x700") << clear << "TR" << big << QRect(675, 118, 50, 14);
    QTest::newRow("no locks stays") << image << "" << big << image;
    QTest::newRow("L and T alone stay") << image << "LT" << minimum << image;
    QTest::newRow("B alone follows the bottom") << image << "B" << big << QRect(20, 197, 215, 215);
}

void TestWidgets::lockRectangles()
{
    QFETCH(QRect, design);
    QFETCH(QString, locks);
    QFETCH(QSize, content);
    QFETCH(QRect, expected);
    QCOMPARE(LockLayout::place(design, locks, QSize(870, 520), content), expected);
}

void TestWidgets::lockLayoutPlacesWidgets()
{
    QWidget window;  // the content stands inside a shown window, as a central widget does
    QWidget content(&window);
    content.resize(870, 520);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto* layout = new LockLayout(&content);
    auto* group = new QGroupBox(&content);
    auto* inside = new QPushButton(group);
    auto* text = new QWidget(&content);
    layout->add(group, QRect(435, 180, 415, 55), "R");
    layout->add(inside, QRect(474, 204, 40, 22), "R");
    layout->add(text, QRect(245, 20, 180, 209), "LR");
    QCOMPARE(inside->geometry(), QRect(39, 24, 40, 22));

    content.resize(680, 380);
    QCOMPARE(layout->rectOf(group), QRect(245, 180, 415, 55));
    QCOMPARE(group->geometry(), QRect(245, 180, 415, 55));
    QCOMPARE(layout->rectOf(inside), QRect(284, 204, 40, 22));
    QCOMPARE(inside->geometry(), QRect(39, 24, 40, 22));  // relative to its group
    QCOMPARE(layout->rectOf(text).width(), -10);
    QCOMPARE(text->size(), QSize(0, 209));

    content.resize(1000, 700);
    QCOMPARE(text->geometry(), QRect(245, 20, 310, 209));
    QCOMPARE(layout->rectOf(&content), QRect());
}

// ---- handler guard ------------------------------------------------------------------------

void TestWidgets::guardHandsFailuresToTheReport_data()
{
    QTest::addColumn<int>("throwing");  // 0 nothing, 1 std::exception, 2 anything else
    QTest::addColumn<int>("reports");
    QTest::addColumn<QString>("what");
    QTest::newRow("a handler that ends normally") << 0 << 0 << "";
    QTest::newRow("a runtime error") << 1 << 1 << "the stream is nil";
    QTest::newRow("something that is no exception") << 2 << 1 << "an unknown failure";
}

void TestWidgets::guardHandsFailuresToTheReport()
{
    QFETCH(int, throwing);
    QFETCH(int, reports);
    QFETCH(QString, what);
    QStringList seen;
    setFailureReport([&](const QString& where, const QString& text) { seen << where << text; });
    bool ranToEnd = false;
    guard("ListBox1_CellClick", [&] {
        if (throwing == 1)
            throw std::runtime_error("the stream is nil");
        if (throwing == 2)
            throw 42;
        ranToEnd = true;
    });
    setFailureReport({});
    QCOMPARE(seen.size(), 2 * reports);
    QCOMPARE(ranToEnd, throwing == 0);
    if (reports) {
        QCOMPARE(seen.at(0), QStringLiteral("ListBox1_CellClick"));
        QCOMPARE(seen.at(1), what);
    }
}

void TestWidgets::defaultReportIsAWarningDialog()
{
    MessageBoxCatcher catcher;
    qApp->installEventFilter(&catcher);
    setFailureReport({});
    guard("ExecuteBtn_Action", [] { throw std::runtime_error("disk full"); });
    // A report that fails itself must not let anything out either.
    setFailureReport([](const QString&, const QString&) { throw std::logic_error("broken report"); });
    guard("Timer5_Action", [] { throw std::runtime_error("x"); });
    setFailureReport({});
    qApp->removeEventFilter(&catcher);
    QCOMPARE(catcher.shown, 1);
    QCOMPARE(catcher.icon, QMessageBox::Warning);
    QVERIFY(catcher.text.contains(QStringLiteral("ExecuteBtn_Action")));
    QVERIFY(catcher.informative.contains(QStringLiteral("disk full")));
}

// ---- canvas and shapes --------------------------------------------------------------------

void TestWidgets::canvasShowsItsBackdrop()
{
    Canvas canvas;
    canvas.resize(50, 40);
    QImage red(10, 8, QImage::Format_RGB32);
    red.fill(Qt::red);
    canvas.setBackdrop(red);
    QImage shot = rendered(canvas);
    QCOMPARE(shot.pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(shot.pixelColor(9, 7), QColor(Qt::red));
    QCOMPARE(shot.pixelColor(10, 8), kGround);
    canvas.setBackdrop(QImage());
    QVERIFY(canvas.Backdrop().isNull());
    shot = rendered(canvas);
    QCOMPARE(shot.pixelColor(0, 0), kGround);
}

void TestWidgets::rectangleIsAFrame_data()
{
    QTest::addColumn<int>("thickness");
    QTest::newRow("default 2") << 0;
    QTest::newRow("thickness 5") << 5;
}

void TestWidgets::rectangleIsAFrame()
{
    QFETCH(int, thickness);
    QWidget window;
    window.resize(100, 80);
    auto* below = new QPushButton(&window);
    below->setGeometry(0, 0, 100, 80);
    auto* frame = new RectangleShape(&window);
    frame->setGeometry(0, 0, 100, 80);
    if (thickness)
        frame->setBorderThickness(thickness);
    const int b = thickness ? thickness : 2;
    const QImage shot = rendered(*frame);
    for (const QPoint p : {QPoint(b - 1, 40), QPoint(50, b - 1), QPoint(99 - (b - 1), 40), QPoint(50, 79 - (b - 1))})
        QCOMPARE(shot.pixelColor(p), QColor(Qt::black));
    for (const QPoint p : {QPoint(b, 40), QPoint(50, b), QPoint(50, 40)})
        QCOMPARE(shot.pixelColor(p), kGround);

    // The drag overlay lies over everything and must not take the clicks of what it covers.
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QSignalSpy clicked(below, &QPushButton::clicked);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 40));
    QCOMPARE(clicked.count(), 1);
}

void TestWidgets::roundRectangleLook()
{
    RoundRectangleShape shape;
    shape.resize(60, 60);
    const QImage shot = rendered(shape);
    QCOMPARE(shot.pixelColor(30, 30), QColor(Qt::white));
    QCOMPARE(shot.pixelColor(30, 0), QColor(0xB3, 0xB3, 0xB3));
    QCOMPARE(shot.pixelColor(0, 30), QColor(0xB3, 0xB3, 0xB3));
    // The corner is cut off: its outermost pixel is left as the ground it stands on.
    QCOMPARE(shot.pixelColor(0, 0), kGround);
    QCOMPARE(shape.CornerSize(), 16);
}

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
