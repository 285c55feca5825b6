#include "platform/widgets/DateTimeQuestion.h"

#include <QDateTimeEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

DateTimeAnswer& answer()
{
    static DateTimeAnswer a;
    return a;
}

// In UTC the field knows no gap and no repeated hour: what is typed is the civil time.
QDateTime toQDateTime(const Date& d)
{
    const Date in(std::clamp<qint64>(d.Year(), 1, 9999), d.Month(), d.Day(), d.Hour(), d.Minute(), d.Second());
    return QDateTime(QDate(int(in.Year()), int(in.Month()), int(in.Day())),
                     QTime(int(in.Hour()), int(in.Minute()), int(in.Second())), Qt::UTC);
}

}  // namespace

void setDateTimeAnswer(DateTimeAnswer a) { answer() = std::move(a); }

std::optional<Date> askDateTime(QWidget* parent, const QString& title, const QString& text, const Date& shown)
{
    if (answer())
        return answer()(title, text, shown);

    QDialog dialog(parent);
    dialog.setWindowTitle(title);
    dialog.setMinimumWidth(400);  // the question in a few lines, not a column
    auto* label = new QLabel(text, &dialog);
    label->setWordWrap(true);
    auto* field = new QDateTimeEdit(&dialog);
    field->setTimeSpec(Qt::UTC);
    field->setDateTimeRange(QDateTime(QDate(1, 1, 1), QTime(0, 0), Qt::UTC),
                            QDateTime(QDate(9999, 12, 31), QTime(23, 59, 59), Qt::UTC));
    field->setDisplayFormat(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    field->setCalendarPopup(true);
    field->setDateTime(toQDateTime(shown));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(label);
    layout->addWidget(field);
    layout->addWidget(buttons);
    field->setFocus();
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QDateTime t = field->dateTime();
    return Date(t.date().year(), t.date().month(), t.date().day(), t.time().hour(), t.time().minute(),
                t.time().second());
}
