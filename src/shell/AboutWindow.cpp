#include "shell/AboutWindow.h"

#include <QCloseEvent>
#include <QFontDatabase>
#include <QImageReader>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>

#include "platform/widgets/Canvas.h"
#include "platform/app/HandlerGuard.h"
#include "shell/App.h"
#include "shell/Globals.h"

namespace {

QPointer<AboutWindow> theAboutWindow;

QFont systemFont(int pixelSize)
{
    QFont f = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    f.setPixelSize(pixelSize);
    return f;
}

// A Japanese serif face in bold; where the platform lacks it, its nearest serif.
QFont nameFont()
{
    QFont f;
    f.setFamilies({QStringLiteral("ヒラギノ明朝 Pro W6"), QStringLiteral("Hiragino Mincho Pro"),
                   QStringLiteral("Noto Serif CJK JP"), QStringLiteral("serif")});
    f.setStyleHint(QFont::Serif);
    f.setPixelSize(14);
    f.setBold(true);
    return f;
}

QLabel* centredLabel(QWidget* parent, const QString& name, const QRect& r, const QFont& font, const QString& text)
{
    auto* l = new QLabel(text, parent);
    l->setObjectName(name);
    l->setGeometry(r);
    l->setFont(font);
    l->setAlignment(Qt::AlignCenter);
    l->setWordWrap(false);
    l->setTextInteractionFlags(Qt::NoTextInteraction);
    l->setAutoFillBackground(true);
    QPalette p = l->palette();
    p.setColor(QPalette::WindowText, Qt::black);
    l->setPalette(p);
    return l;
}

}  // namespace

AboutWindow* AboutWindow::instance()
{
    if (!theAboutWindow)
        theAboutWindow = new AboutWindow;
    return theAboutWindow;
}

bool AboutWindow::exists()
{
    return !theAboutWindow.isNull();
}

AboutWindow::AboutWindow(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint)
{
    setObjectName(QStringLiteral("AboutWindow"));
    setWindowTitle(Globals::kAppAbout());
    setFixedSize(300, 300);
    setModal(true);

    Canvas1 = new Canvas(this);
    Canvas1->setObjectName(QStringLiteral("Canvas1"));
    Canvas1->setGeometry(86, 7, 128, 128);
    Canvas1->setFocusPolicy(Qt::StrongFocus);
    Canvas1->setBackdrop(vlk_Icon_BigSur_128());

    const QString design = QStringLiteral("ラベル:");
    AppName = centredLabel(this, QStringLiteral("AppName"), QRect(41, 142, 225, 20), nameFont(), design);
    Label1 = centredLabel(this, QStringLiteral("Label1"), QRect(29, 260, 242, 20), systemFont(12),
                          QStringLiteral("Copyright © Velkaro authors"));
    VerString = centredLabel(this, QStringLiteral("VerString"), QRect(78, 162, 150, 20), systemFont(12), design);

    TextArea1 = new QPlainTextEdit(Globals::kAboutText(), this);
    TextArea1->setObjectName(QStringLiteral("TextArea1"));
    TextArea1->setGeometry(12, 186, 276, 72);
    TextArea1->setFont(systemFont(12));
    TextArea1->setReadOnly(true);
    TextArea1->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    TextArea1->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    TextArea1->setLineWrapMode(QPlainTextEdit::WidgetWidth);

    Label2 = centredLabel(this, QStringLiteral("Label2"), QRect(12, 283, 269, 14), systemFont(10),
                          Globals::kHowToClose());

    setTabOrder(Canvas1, AppName);
    setTabOrder(AppName, Label1);
    setTabOrder(Label1, VerString);
    setTabOrder(VerString, TextArea1);
    setTabOrder(TextArea1, Label2);

    guard("show the program's name", [this] { AppName_Open(); });
    guard("show the version", [this] { VerString_Open(); });
}

void AboutWindow::AppName_Open()
{
    AppName->setText(Globals::kAppName());
}

void AboutWindow::VerString_Open()
{
    VerString->setText(QStringLiteral("Ver.") + App::ShortVersion());
}

void AboutWindow::ShowModal()
{
    exec();
}

void AboutWindow::mousePressEvent(QMouseEvent*)
{
    hide();
}

void AboutWindow::closeEvent(QCloseEvent* e)
{
    QDialog::closeEvent(e);
    if (e->isAccepted())
        deleteLater();
}

QImage vlk_Icon_BigSur_128()
{
    static const QImage icon = [] {
        Q_INIT_RESOURCE(velkaro);
        // Drawn for the screen's own pixels, so that it stays sharp on a scaled screen; it
        // still takes 128 by 128 in the layout.
        const qreal ratio = qApp ? qApp->devicePixelRatio() : 1.0;
        QImageReader reader(QStringLiteral(":/icons/velkaro.svg"));
        reader.setScaledSize(QSize(128, 128) * ratio);
        QImage image = reader.read();
        image.setDevicePixelRatio(ratio);
        return image;
    }();
    return icon;
}
