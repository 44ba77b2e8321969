#pragma once

#include "core/Dialogs.h"
#include "core/MessageLoop.h"

class QWidget;

namespace Brindle {

/// Questions and notices as boxes over a window. A program that is ending asks nothing any more: each question is then
/// answered with Cancel.
class MessageBoxDialogs : public Dialogs {
public:
    MessageBoxDialogs(QWidget* parent, const MessageLoop& loop) : parent_(parent), loop_(loop) {}

    bool Confirm(const QString& text) override;
    void Inform(const QString& text) override;
    void Warn(const QString& text) override;
    ChosenFile AskSaveFile(const QString& title, const QString& folder, const QStringList& types) override;
    QString AskFolder(const QString& title, const QString& folder) override;

private:
    QWidget* parent_;
    const MessageLoop& loop_;
};

} // namespace Brindle
