#include "ui/AccessKeys.h"

#include "toolkit/Ascii.h"

namespace Brindle {

namespace {

const char* const hintProperty = "hint";

QKeySequence AltAnd(QChar letter) {
    return letter.isNull() ? QKeySequence() : QKeySequence(Qt::ALT | static_cast<Qt::Key>(letter.unicode()));
}

} // namespace

QString WithoutColon(const QString& caption) {
    QString text = caption;
    while (text.endsWith(u':') || text.endsWith(u' ') || text.endsWith(QChar::Nbsp))
        text.chop(1);
    return text;
}

QChar TakeAccessKey(const QString& caption, QString& taken) {
    const auto take = [&taken](QChar c) {
        if (!Ascii::IsUpper(c) || taken.contains(c))
            return false;
        taken += c;
        return true;
    };
    // The beginnings of words are easiest to guess.
    const QString letters = caption.toUpper();
    for (qsizetype i = 0; i < letters.size(); ++i)
        if ((i == 0 || letters[i - 1] == u' ') && take(letters[i]))
            return letters[i];
    for (const QChar c : letters)
        if (take(c))
            return c;
    // Its letters are used up by the others: any that is left is better than none.
    for (char16_t c = u'A'; !caption.isEmpty() && c <= u'Z'; ++c)
        if (take(c))
            return c;
    return {};
}

void AccessKeys::Add(QLabel* label, QWidget* control) {
    label->setBuddy(control);
    auto* const key = new QShortcut(control);
    QObject::connect(key, &QShortcut::activated, control, [control] { control->setFocus(Qt::ShortcutFocusReason); });
    labels_.append({label, control, key});
}

void AccessKeys::SetHint(QAbstractButton* button, const QString& hint) {
    button->setProperty(hintProperty, hint);
}

void AccessKeys::Assign() {
    QString taken = reserved_;
    const auto ownKey = [](const QString& caption) { return QKeySequence::mnemonic(caption); };
    for (const Labelled& item : labels_) {
        const bool own = !ownKey(item.Label->text()).isEmpty();
        const QKeySequence key = own ? QKeySequence() : AltAnd(TakeAccessKey(item.Label->text(), taken));
        item.Key->setKey(key);
        item.Control->setToolTip(key.toString(QKeySequence::NativeText));
    }
    for (QAbstractButton* button : buttons_) {
        if (!ownKey(button->text()).isEmpty())
            continue;
        const QKeySequence key = AltAnd(TakeAccessKey(button->text(), taken));
        button->setShortcut(key);
        const QString shown = key.toString(QKeySequence::NativeText);
        const QString named = shown.isEmpty() ? button->text() : QString(button->text() + u" (" + shown + u')');
        const QString hint = button->property(hintProperty).toString();
        button->setToolTip(hint.isEmpty() ? named : QString(named + u'\n' + hint));
    }
}

} // namespace Brindle
