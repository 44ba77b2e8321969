#pragma once

#include <QString>

#include <stdexcept>

namespace Brindle {

/// A failure that the user must hear of, as one line that names the file, address or key and the reason.
class Failure : public std::runtime_error {
public:
    explicit Failure(const QString& message) : std::runtime_error(message.toStdString()), message_(message) {}
    const QString& Message() const { return message_; }

private:
    QString message_;
};

/// A file could not be created, opened or written.
class SaveError : public Failure {
    using Failure::Failure;
};

/// What a directory's reader throws when it cannot go on with the page in hand. The reading of that page ends; the
/// leads before the place stay.
class PageError : public Failure {
    using Failure::Failure;
};

/// A reader asked for an item that a malformed field does not have.
class IndexError : public PageError {
    using PageError::PageError;
};

} // namespace Brindle
