#pragma once

#include "core/Lead.h"

#include <QDateTime>
#include <QString>

#include <variant>

namespace Brindle {

/// Who runs a harvest.
enum class HarvestOrigin { Window = 0, CommandLine = 1, ManySearches = 2 };

/// How a harvest ended. One that a crash ended stays `Open`.
enum class HarvestEnding { Open = 0, Done = 1, Stopped = 2, Failed = 3 };

/// What is known of a harvest when it begins.
struct HarvestInfo {
    QString Uid;     ///< of the harvest, unlike any other anywhere
    QString Session; ///< of the run of the program
    HarvestOrigin Origin = HarvestOrigin::Window;
    QString Site;  ///< site code
    QString Start; ///< address of the first page
    QString What;  ///< of a search, where it was one
    QString Place;
    QString By;                 ///< user@machine
    qint64 Begun = 0;           ///< milliseconds since 1970, UTC
    bool LinkTellsApart = true; ///< false where a directory's details links are shared by its listings
};

/// A lead found, the `Seq`th of its harvest, from 1 on.
struct FoundLead {
    QString HarvestUid;
    qint64 Seq = 0;
    qint64 Found = 0; ///< milliseconds since 1970, UTC
    Brindle::Lead Lead;
    QString Session = {}; ///< whose harvest it was; dropped when another session has taken it over. Empty: anyone's
};

/// The end of a harvest.
struct HarvestEnd {
    QString HarvestUid;
    qint64 Ended = 0;
    HarvestEnding Ending = HarvestEnding::Done;
    qint32 Pages = 0;
    QString Session = {}; ///< as of a lead
};

/// What a store is told, in the order in which it happened.
using StoreEvent = std::variant<HarvestInfo, FoundLead, HarvestEnd>;

} // namespace Brindle
