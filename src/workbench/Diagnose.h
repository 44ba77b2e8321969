#pragma once

#include "core/Platform.h"
#include "core/SiteAdapter.h"

#include <QString>

#include <optional>
#include <span>

namespace Brindle {

/// What a front end knows that the report cannot find out by itself.
struct DiagnoseParts {
    Platform& System;
    QString SitesFileName;    ///< as named by the user; empty: the program's
    QString SettingsFileName; ///< the same: the user's
    QString Store;            ///< the same: that of the options
    QString Engine;           ///< which browser engine there is, or that there is none
    /// Why Chromium has no sandbox; empty: it has its sandbox; nothing where there is no Chromium.
    std::optional<QString> WhyNoSandbox;
    std::span<const SiteAdapter> Directories;
};

/// The state of an installation for a report of a fault, as lines "key: value": versions, folders, engine, proxy mode,
/// store, recipes, and one line "problem: …" for everything that is wrong. No password, no proxy's address and no lead
/// is in it. Nothing is changed or made but what opening an existing store does.
QString Diagnose(const DiagnoseParts& parts);

} // namespace Brindle
