#include "ui/DigitsEdit.h"

#include "toolkit/Ascii.h"

#include <QLineEdit>

#include <algorithm>

namespace Brindle {

QValidator::State DigitsOnly::validate(QString& input, int& position) const {
    const auto cursor = input.begin() + std::clamp<qsizetype>(position, 0, input.size());
    position = static_cast<int>(std::count_if(input.begin(), cursor, Ascii::IsDigit<QChar>));
    input.removeIf([](QChar c) { return !Ascii::IsDigit(c); });
    return Acceptable;
}

QValidator::State OneCharacter::validate(QString& input, int& position) const {
    input.removeIf([](QChar c) { return c.isSurrogate(); });
    input.truncate(1);
    position = std::min(position, static_cast<int>(input.size()));
    return Acceptable;
}

DigitsEdit::DigitsEdit(QWidget* parent) : QAbstractSpinBox(parent) {
    SetText({});
}

void DigitsEdit::SetText(const QString& text) {
    lineEdit()->setValidator(nullptr);
    lineEdit()->setText(text);
    lineEdit()->setValidator(new DigitsOnly(lineEdit()));
}

void DigitsEdit::stepBy(int steps) {
    lineEdit()->setText(QString::number(std::max(qlonglong{0}, text().toLongLong() + steps)));
    lineEdit()->selectAll();
}

QAbstractSpinBox::StepEnabled DigitsEdit::stepEnabled() const {
    return text().toLongLong() > 0 ? StepUpEnabled | StepDownEnabled : StepUpEnabled;
}

} // namespace Brindle
