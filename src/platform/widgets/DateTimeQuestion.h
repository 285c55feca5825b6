#pragma once
#include <QString>

#include <functional>
#include <optional>

#include "platform/text/Date.h"

class QWidget;

// Asks for a civil date and time (years 1 to 9999) in a small modal dialog: the text above
// a field that starts at `shown` (brought into that range), OK and Cancel. Every civil time
// can be typed, also one that a change to summer time skips. nullopt when the user cancels.
std::optional<Date> askDateTime(QWidget* parent, const QString& title, const QString& text, const Date& shown);

// Tests answer in place of a person: while an answer is set, askDateTime shows nothing and
// gives what it gives. An empty answer restores the dialog.
using DateTimeAnswer = std::function<std::optional<Date>(const QString& title, const QString& text, const Date& shown)>;
void setDateTimeAnswer(DateTimeAnswer answer);
