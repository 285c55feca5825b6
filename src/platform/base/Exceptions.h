#pragma once
#include <QString>

#include "platform/base/TextId.h"

#include <stdexcept>

// The two failures that the product lets end a handler: using something that is not
// there, and reaching past the end of an array or table. Their text is what the user reads
// under "Velkaro could not ...": a plain sentence that says what happened, naming the file
// or the cell where one is known.
class NilObjectException : public std::runtime_error {
public:
    NilObjectException()
        : std::runtime_error(
              textById("Report.nil", "Something that was needed is no longer there.").toStdString())
    {
    }
    explicit NilObjectException(const QString& message) : std::runtime_error(message.toStdString()) {}
};

class OutOfBoundsException : public std::runtime_error {
public:
    OutOfBoundsException()
        : std::runtime_error(
              textById("Report.outOfBounds", "Something was looked for past the end of a list.").toStdString())
    {
    }
    explicit OutOfBoundsException(const QString& message) : std::runtime_error(message.toStdString()) {}
};
