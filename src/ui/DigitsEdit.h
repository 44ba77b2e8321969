#pragma once

#include <QAbstractSpinBox>
#include <QValidator>

namespace Brindle {

/// Keeps what is typed or pasted to the digits 0 to 9. A text that was there before stays until it is edited.
class DigitsOnly : public QValidator {
    Q_OBJECT

public:
    using QValidator::QValidator;
    State validate(QString& input, int& position) const override;
};

/// Keeps what is typed to one UTF-16 character.
class OneCharacter : public QValidator {
    Q_OBJECT

public:
    using QValidator::QValidator;
    State validate(QString& input, int& position) const override;
};

/// A number with arrows that can also be empty, and whose text is kept as it was set until it is edited.
class DigitsEdit : public QAbstractSpinBox {
    Q_OBJECT

public:
    explicit DigitsEdit(QWidget* parent);
    void SetText(const QString& text);
    void stepBy(int steps) override;

protected:
    StepEnabled stepEnabled() const override;
};

} // namespace Brindle
