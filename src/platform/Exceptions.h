#pragma once
#include <stdexcept>

// The two failures that the product lets end a handler: using something that is not
// there, and reaching past the end of an array or table.
class NilObjectException : public std::runtime_error {
public:
    explicit NilObjectException(const char* what = "NilObjectException: an object that does not exist was used")
        : std::runtime_error(what) {}
};

class OutOfBoundsException : public std::runtime_error {
public:
    explicit OutOfBoundsException(const char* what = "OutOfBoundsException: an index lies outside its array")
        : std::runtime_error(what) {}
};
