// The message box: the dialog that a button code asks for, and the result that each way of
// closing it gives. The dialog is answered from inside its own event loop.

#include <QPushButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "platform/MsgBox.h"

using Button = QMessageBox::StandardButton;
Q_DECLARE_METATYPE(QMessageBox::Icon)

class MsgBoxTest : public QObject {
    Q_OBJECT

private slots:
    void dialog_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("press");  // a standard button; NoButton presses Escape
        QTest::addColumn<int>("result");
        QTest::addColumn<QMessageBox::Icon>("icon");
        QTest::addColumn<int>("defaultButton");
        QTest::addColumn<int>("buttonCount");
        const int ok = Button::Ok, cancel = Button::Cancel, yes = Button::Yes, no = Button::No;
        QTest::newRow("question, OK") << 33 << ok << 1 << QMessageBox::Question << ok << 2;
        QTest::newRow("question, Cancel") << 33 << cancel << 2 << QMessageBox::Question << ok << 2;
        QTest::newRow("question, Escape is Cancel") << 33 << int(Button::NoButton) << 2 << QMessageBox::Question << ok << 2;
        QTest::newRow("plain OK") << 0 << ok << 1 << QMessageBox::NoIcon << ok << 1;
        QTest::newRow("stop, retry and cancel") << 16 + 5 << int(Button::Retry) << 4 << QMessageBox::Critical
                                                << int(Button::Retry) << 2;
        QTest::newRow("yes no cancel, second default") << 3 + 256 << yes << 6 << QMessageBox::NoIcon << no << 3;
        QTest::newRow("yes no cancel, Escape is Cancel") << 3 << int(Button::NoButton) << 2 << QMessageBox::NoIcon << yes << 3;
        QTest::newRow("caution yes no, Escape is No") << 48 + 4 << int(Button::NoButton) << 7 << QMessageBox::Warning << yes << 2;
        QTest::newRow("note, abort retry ignore, third default") << 64 + 2 + 512 << int(Button::Ignore) << 5
                                                                 << QMessageBox::Information << int(Button::Ignore) << 3;
        QTest::newRow("default beyond the set falls back to the first") << 1 + 512 << cancel << 2
                                                                         << QMessageBox::NoIcon << ok << 2;
    }
    void dialog()
    {
        QFETCH(int, code);
        QFETCH(int, press);
        QFETCH(int, result);
        QFETCH(QMessageBox::Icon, icon);
        QFETCH(int, defaultButton);
        QFETCH(int, buttonCount);

        QMessageBox* seen = nullptr;
        QMessageBox::Icon seenIcon = QMessageBox::NoIcon;
        int seenDefault = -1, seenCount = -1;
        QString seenText, seenTitle;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box)
                return;
            if (seen) {  // still up after being answered: close it rather than hang
                box->done(0);
                return;
            }
            seen = box;
            seenIcon = box->icon();
            seenDefault = box->defaultButton() ? int(box->standardButton(box->defaultButton())) : 0;
            seenCount = int(box->buttons().size());
            seenText = box->text();
            seenTitle = box->windowTitle();
            if (press == Button::NoButton)
                QTest::keyClick(box, Qt::Key_Escape);
            else if (QAbstractButton* b = box->button(Button(press)))
                b->click();
            else
                box->done(0);
        });
        poll.start(5);
        const int got = MsgBox(QStringLiteral("Go on?"), code, QStringLiteral("Title"));

        QVERIFY(seen);
        QCOMPARE(got, result);
        QCOMPARE(seenIcon, icon);
        QCOMPARE(seenDefault, defaultButton);
        QCOMPARE(seenCount, buttonCount);
        QCOMPARE(seenText, QStringLiteral("Go on?"));
        QCOMPARE(seenTitle, QStringLiteral("Title"));
    }

    void answerTakesThePlaceOfTheDialog()
    {
        QString text, title;
        int buttons = -1;
        setMsgBoxAnswer([&](const QString& t, int b, const QString& ti) {
            text = t;
            buttons = b;
            title = ti;
            return 7;
        });
        QCOMPARE(MsgBox(QStringLiteral("Sure?"), 33, QString()), 7);
        setMsgBoxAnswer({});
        QCOMPARE(text, QStringLiteral("Sure?"));
        QCOMPARE(buttons, 33);
        QVERIFY(title.isEmpty());
        QVERIFY(!QApplication::activeModalWidget());
    }
};

QTEST_MAIN(MsgBoxTest)
#include "tst_msgbox.moc"
