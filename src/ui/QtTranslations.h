#pragma once

#include <QString>
#include <QTranslator>

namespace Brindle {

/// The texts of Qt itself, on the buttons of boxes and in file dialogs, in the language of the user.
class QtTranslations {
public:
    /// Takes a language code; Qt's texts stay English where there is no translation for it, beside the program or
    /// where Qt has its own.
    void Load(const QString& code);

private:
    QTranslator translator_;
};

} // namespace Brindle
