#pragma once

#include "HarvestBench.h"
#include "ui/TfrmSettings.h"

namespace Brindle::Test {

/// A platform with two answers and a memory.
class StubPlatform : public Platform {
public:
    QString GetDocumentsFolder() override { return QStringLiteral("/docs"); }
    QString SettingsFolder() override { return {}; }
    bool OpenInDefaultBrowser(const QString& url) override {
        Opened.append(url);
        return true;
    }
    void ClearUrlCache() override {}
    QString BrowserEngineVersion() override { return QStringLiteral("0"); }
    void WriteUserRegistry(const QString&, const QString&, quint32) override {}

    QStringList Opened;
};

/// A settings dialog on stand-ins.
class DialogBench {
public:
    explicit DialogBench(const Settings& settings = {}, const QStringList& captions = EnglishCaptions())
        : Options(settings), Dialog(Options, More, captions, System, Notices) {}

    Settings Options;
    MoreOptions More;
    StubPlatform System;
    ScriptedDialogs Notices;
    TfrmSettings Dialog;

    template <class T>
    T* Control(const char* name) const {
        return Dialog.findChild<T*>(QString::fromLatin1(name));
    }
    void Click(const char* button) const { Control<QAbstractButton>(button)->click(); }
    void SetText(const char* edit, const QString& text) const { Control<QLineEdit>(edit)->setText(text); }
};

} // namespace Brindle::Test
