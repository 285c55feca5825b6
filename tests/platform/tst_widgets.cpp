// The small widgets and services of the platform layer: message boxes, the failure report,
// the busy pointer, one-shot timers and the drawn shapes. (Where the lock layout puts
// controls, also inside groups, is the main window's test.)

#include "platform/widgets/BusyPointer.h"
#include "platform/widgets/Canvas.h"
#include "platform/app/HandlerGuard.h"
#include "platform/widgets/MsgBox.h"
#include "platform/widgets/OneShotTimer.h"
#include "platform/widgets/Shapes.h"

#include <QtTest>
#include <QtWidgets>

#include <new>
#include <stdexcept>

namespace {

// Answers every message box that shows while it lives, as a person would: presses `press`,
// or Escape for NoButton. Notes each box as "icon default-button buttons|title|text|informative".
struct BoxAnswerer : QObject {
    QMessageBox::StandardButton press = QMessageBox::NoButton;
    QStringList seen;

    BoxAnswerer() { qApp->installEventFilter(this); }
    ~BoxAnswerer() override { qApp->removeEventFilter(this); }
    bool eventFilter(QObject* o, QEvent* e) override
    {
        auto* box = qobject_cast<QMessageBox*>(o);
        if (!box || e->type() != QEvent::Show)
            return false;
        const int preset = box->defaultButton() ? box->standardButton(box->defaultButton()) : 0;
        seen << QStringLiteral("%1 %2 %3|%4|%5|%6").arg(box->icon()).arg(preset).arg(box->buttons().size())
                    .arg(box->windowTitle(), box->text(), box->informativeText());
        QMetaObject::invokeMethod(box, [box, b = box->button(press)] { b ? b->click() : QTest::keyClick(box, Qt::Key_Escape); },
                                  Qt::QueuedConnection);
        return false;
    }
};

}  // namespace

// A message box by button code: what it shows, and the result of the button pressed (NoButton: Escape).
struct Box { int code, press, result; QMessageBox::Icon icon; int defaultButton, buttons; };
Q_DECLARE_METATYPE(Box)

class TestWidgets : public QObject {
    Q_OBJECT
private slots:
    void msgBox_data()
    {
        using B = QMessageBox;
        QTest::addColumn<Box>("c");
        // The execute run's question first; the others keep the rules of the default button,
        // of the pressed button's result and of Escape where there is no Cancel.
        QTest::newRow("question, Escape is Cancel") << Box{33, B::NoButton, 2, B::Question, B::Ok, 2};
        QTest::newRow("yes no cancel, second default") << Box{3 + 256, B::Yes, 6, B::NoIcon, B::No, 3};
        QTest::newRow("caution yes no, Escape is No") << Box{48 + 4, B::NoButton, 7, B::Warning, B::Yes, 2};
        QTest::newRow("default beyond the set falls back to the first") << Box{1 + 512, B::Cancel, 2, B::NoIcon, B::Ok, 2};
    }
    void msgBox()
    {
        QFETCH(Box, c);
        BoxAnswerer answerer;
        answerer.press = QMessageBox::StandardButton(c.press);
        QCOMPARE(MsgBox(QStringLiteral("Go on?"), c.code, QStringLiteral("Title"), QStringLiteral("2 files")), c.result);
        QCOMPARE(answerer.seen,
                 QStringList(QStringLiteral("%1 %2 %3|Title|Go on?|2 files").arg(c.icon).arg(c.defaultButton).arg(c.buttons)));
    }

    // Whatever a handler throws goes to the report; without a report set, a warning dialog
    // says what could not be done, and why; a report that fails itself lets nothing out
    // either, and shows no dialog.
    void guardHandsFailuresToTheReport()
    {
        QStringList seen;
        setFailureReport([&](const QString& action, const QString& reason) { seen << action + ": " + reason; });
        guard("sort the files", [] {});
        guard("sort the files", [] { throw std::runtime_error("The disk is full."); });
        guard("sort the files", [] { throw std::bad_alloc(); });
        guard("sort the files", [] { throw 42; });
        setFailureReport({});
        QCOMPARE(seen, (QStringList{"sort the files: The disk is full.", "sort the files: There was not enough memory.",
                                    "sort the files: The cause is not known."}));
        BoxAnswerer answerer;
        answerer.press = QMessageBox::Ok;
        guard("change the dates in the files", [] { throw std::runtime_error("The disk is full."); });
        setFailureReport([](const QString&, const QString&) { throw std::logic_error("broken report"); });
        guard("sort the files", [] { throw std::runtime_error("x"); });
        setFailureReport({});
        QCOMPARE(answerer.seen, QStringList(QStringLiteral("%1 0 1|Velkaro|Velkaro could not change the dates in the files.|"
                                                           "The disk is full.").arg(QMessageBox::Warning)));
    }

    // A handler past 0.3 s shows the busy pointer until it ends; a failure's report, shown
    // after the handler, sees the usual pointer again.
    void busyPointerOverLongHandlers()
    {
        qint64 shownAfter = -1;
        bool busyAtReport = true;
        setFailureReport([&](const QString&, const QString&) { busyAtReport = QGuiApplication::overrideCursor(); });
        guard("sort the files", [&] {
            QElapsedTimer clock;
            clock.start();
            while (!QGuiApplication::overrideCursor() && clock.elapsed() < 5000)
                stillBusy();
            shownAfter = clock.elapsed();
            QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
            throw std::runtime_error("x");
        });
        setFailureReport({});
        QVERIFY2(shownAfter >= 300 && shownAfter < 1000, qPrintable(QString::number(shownAfter)));
        QVERIFY(!busyAtReport && !QGuiApplication::overrideCursor());
    }

    // (That a timer made is off until armed is the scheduled value's test: a window whose
    // timers fired unasked would report the check-box timer's failure on its empty table.)
    void timerFiresOncePerArming()
    {
        OneShotTimer twice, later;
        QList<int> modes;  // Mode as each Action of `twice` sees it
        connect(&twice, &OneShotTimer::Action, this, [&] { modes << twice.Mode(); });
        twice.setMode(1);
        twice.setMode(1);  // armed again while pending: still one firing
        QCOMPARE(twice.Mode(), 1);
        // A later timer marks the end of the wait: by then every firing has happened.
        later.setPeriod(60);
        QSignalSpy end(&later, &OneShotTimer::Action);
        later.setMode(1);
        QVERIFY(end.wait(2000));
        QCOMPARE(modes, QList<int>{0});  // off again by the time Action runs
    }

    // Pixels of 60x40 widgets drawn on blue, so that what they leave transparent reads blue.
    void drawing()
    {
        const QColor ground(Qt::blue);
        const auto pixel = [&](QWidget& w, QPoint at) {
            w.resize(60, 40);
            QImage image(w.size(), QImage::Format_ARGB32);
            image.fill(ground);
            w.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
            return image.pixelColor(at);
        };
        QImage red(10, 8, QImage::Format_RGB32);
        red.fill(Qt::red);
        Canvas canvas;
        canvas.setBackdrop(red);
        QCOMPARE(pixel(canvas, {9, 7}), QColor(Qt::red));  // the backdrop at the top-left
        QCOMPARE(pixel(canvas, {10, 8}), ground);  // and nothing beside it
        RectangleShape frame;
        QCOMPARE(pixel(frame, {1, 20}), QColor(Qt::black));  // 2 pixels unless set
        QCOMPARE(pixel(frame, {2, 20}), ground);
        RoundRectangleShape round;
        QCOMPARE(pixel(round, {30, 20}), QColor(Qt::white));
        QCOMPARE(pixel(round, {0, 0}), ground);  // the corner, cut off
    }

    // The drag frame lies over everything and must not take the clicks of what it covers.
    void dragFrameLetsClicksThrough()
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
};

QTEST_MAIN(TestWidgets)
#include "tst_widgets.moc"
