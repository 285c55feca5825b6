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

#include <functional>
#include <memory>
#include <stdexcept>

using WidgetMaker = std::function<QWidget*()>;
Q_DECLARE_METATYPE(WidgetMaker)

namespace {

// Pixels as drawn on a blue ground, so that what a widget leaves transparent reads blue.
const QColor kGround(0, 0, 255);

QColor pixelAt(QWidget& w, QPoint p)
{
    QImage image(w.size(), QImage::Format_ARGB32);
    image.fill(kGround);
    w.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image.pixelColor(p);
}

// Closes every message box that shows and keeps what the last one said.
class MessageBoxCatcher : public QObject {
public:
    int shown = 0;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;

protected:
    bool eventFilter(QObject* o, QEvent* e) override
    {
        auto* box = qobject_cast<QMessageBox*>(o);
        if (box && e->type() == QEvent::Show) {
            ++shown;
            text = box->text() + u'\n' + box->informativeText();
            icon = box->icon();
            QMetaObject::invokeMethod(box, "accept", Qt::QueuedConnection);
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
    void lockRectangles_data();
    void lockRectangles();
    void lockLayoutPlacesWidgets();
    void guardHandsFailuresToTheReport_data();
    void guardHandsFailuresToTheReport();
    void defaultReportIsAWarningDialog();
    void drawing_data();
    void drawing();
    void dragFrameLetsClicksThrough();
};

void TestWidgets::timerFiresOnce_data()
{
    QTest::addColumn<int>("arms");
    QTest::addColumn<bool>("thenOff");
    QTest::addColumn<int>("firings");
    QTest::newRow("armed once") << 1 << false << 1;
    QTest::newRow("armed twice while pending") << 2 << false << 1;
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
    QList<int> modeInAction;
    connect(&timer, &OneShotTimer::Action, this, [&] { modeInAction << timer.Mode(); });
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
    QCOMPARE(modeInAction, QList<int>(firings, 0));  // off again by the time Action runs
}

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
    QTest::newRow("group R at design size") << aim << "R" << design << aim;
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

    content.resize(680, 380);
    QCOMPARE(group->geometry(), QRect(245, 180, 415, 55));
    QCOMPARE(layout->rectOf(inside), QRect(284, 204, 40, 22));
    QCOMPARE(inside->geometry(), QRect(39, 24, 40, 22));  // relative to its group
    QCOMPARE(layout->rectOf(text).width(), -10);
    QCOMPARE(text->size(), QSize(0, 209));
    content.resize(1000, 700);
    QCOMPARE(text->geometry(), QRect(245, 20, 310, 209));
    QCOMPARE(layout->rectOf(&content), QRect());
}

void TestWidgets::guardHandsFailuresToTheReport_data()
{
    QTest::addColumn<int>("throwing");  // 0 nothing, 1 std::exception, 2 std::bad_alloc, 3 anything else
    QTest::addColumn<QStringList>("reported");
    QTest::newRow("a handler that ends normally") << 0 << QStringList{};
    QTest::newRow("a runtime error") << 1 << QStringList{"sort the files", "The disk is full."};
    QTest::newRow("out of memory") << 2 << QStringList{"sort the files", "There was not enough memory."};
    QTest::newRow("no exception class") << 3 << QStringList{"sort the files", "The cause is not known."};
}

void TestWidgets::guardHandsFailuresToTheReport()
{
    QFETCH(int, throwing);
    QFETCH(QStringList, reported);
    QStringList seen;
    setFailureReport([&](const QString& where, const QString& what) { seen << where << what; });
    bool ranToEnd = false;
    guard("sort the files", [&] {
        if (throwing == 1)
            throw std::runtime_error("The disk is full.");
        if (throwing == 2)
            throw std::bad_alloc();
        if (throwing == 3)
            throw 42;
        ranToEnd = true;
    });
    setFailureReport({});
    QCOMPARE(seen, reported);
    QCOMPARE(ranToEnd, throwing == 0);
}

void TestWidgets::defaultReportIsAWarningDialog()
{
    MessageBoxCatcher catcher;
    qApp->installEventFilter(&catcher);
    guard("change the dates in the files", [] { throw std::runtime_error("The disk is full."); });
    // A report that fails itself lets nothing out either, and shows no dialog.
    setFailureReport([](const QString&, const QString&) { throw std::logic_error("broken report"); });
    guard("Timer5_Action", [] { throw std::runtime_error("x"); });
    setFailureReport({});
    qApp->removeEventFilter(&catcher);
    QCOMPARE(catcher.shown, 1);
    QCOMPARE(catcher.icon, QMessageBox::Warning);
    QCOMPARE(catcher.text, QStringLiteral("Velkaro could not change the dates in the files.\nThe disk is full."));
}

void TestWidgets::drawing_data()
{
    QTest::addColumn<WidgetMaker>("make");  // a 60x40 widget
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<QColor>("expected");
    const QColor grey(0xB3, 0xB3, 0xB3);
    const auto canvas = [](bool withBackdrop) {
        return WidgetMaker([withBackdrop] {
            auto* c = new Canvas;
            QImage red(10, 8, QImage::Format_RGB32);
            red.fill(Qt::red);
            c->setBackdrop(red);
            if (!withBackdrop)
                c->setBackdrop(QImage());
            return c;
        });
    };
    const auto frame = [](int thickness) {
        return WidgetMaker([thickness] {
            auto* r = new RectangleShape;
            if (thickness)
                r->setBorderThickness(thickness);
            return r;
        });
    };
    const WidgetMaker round([] { return new RoundRectangleShape; });
    QTest::newRow("backdrop at the top-left") << canvas(true) << QPoint(9, 7) << QColor(Qt::red);
    QTest::newRow("nothing beside the backdrop") << canvas(true) << QPoint(10, 8) << kGround;
    QTest::newRow("backdrop removed") << canvas(false) << QPoint(0, 0) << kGround;
    QTest::newRow("frame, default 2 px") << frame(0) << QPoint(1, 20) << QColor(Qt::black);
    QTest::newRow("frame, inside the default") << frame(0) << QPoint(2, 20) << kGround;
    QTest::newRow("frame of 5 px, right edge") << frame(5) << QPoint(55, 20) << QColor(Qt::black);
    QTest::newRow("frame of 5 px, inside") << frame(5) << QPoint(54, 20) << kGround;
    QTest::newRow("round rectangle fill") << round << QPoint(30, 20) << QColor(Qt::white);
    QTest::newRow("round rectangle border") << round << QPoint(30, 0) << grey;
    QTest::newRow("round rectangle corner cut") << round << QPoint(0, 0) << kGround;
}

void TestWidgets::drawing()
{
    QFETCH(WidgetMaker, make);
    QFETCH(QPoint, at);
    QFETCH(QColor, expected);
    std::unique_ptr<QWidget> w(make());
    w->resize(60, 40);
    QCOMPARE(pixelAt(*w, at), expected);
}

// The drag frame lies over everything and must not take the clicks of what it covers.
void TestWidgets::dragFrameLetsClicksThrough()
{
    QWidget window;
    window.resize(100, 80);
    auto* below = new QPushButton(&window);
    below->setGeometry(0, 0, 100, 80);
    (new RectangleShape(&window))->setGeometry(0, 0, 100, 80);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QSignalSpy clicked(below, &QPushButton::clicked);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(50, 40));
    QCOMPARE(clicked.count(), 1);
}

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
