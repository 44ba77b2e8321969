#pragma once

#include <QStringView>

#include <utility>

namespace Brindle {

/// The public numbering plan of a country, as far as it takes to tell its numbers from other digits.
struct PhonePlan {
    QStringView Region; ///< ISO 3166 alpha-2
    int Code;           ///< country code of E.164
    QStringView Trunk;  ///< dialled before a national number inside the country; empty: nothing
    QStringView
        Abroad; ///< dialled before a country code; "00[1-9]" where a digit chooses the company that carries the call
    /// Which numbers there are: entries "prefixes:lengths" behind blanks. Prefixes are separated by commas; "[2-9]" in
    /// one is any of these digits. Lengths are those of the whole national number: "9", "7-11", "6,8". A "+" behind the
    /// prefixes begins what must follow each of them, one of a list again. An entry that begins with "!" names ranges
    /// within the others that the regulator has not given out.
    QStringView Numbers;
};

/// The plan of a region; null when it is unknown.
const PhonePlan* PlanOfRegion(QStringView region);

/// The plan of the numbers with a country code; `national` (digits) tells countries apart that share it. Null when the
/// code is unknown.
const PhonePlan* PlanOfCode(int code, QStringView national);

/// How many digits one dials for abroad before the country code that follows; 0 when `digits` do not begin so.
qsizetype AbroadPrefixOf(const PhonePlan& plan, QStringView digits);

/// Whether a national number (ASCII digits) has a length that occurs in the country.
bool IsPossibleLength(const PhonePlan& plan, qsizetype length);
qsizetype LongestOf(const PhonePlan& plan);

/// Whether its first digits are in use with its length.
bool IsInUse(const PhonePlan& plan, QStringView national);

/// Whether numbers of its length begin with its first digit.
bool IsLikeOne(const PhonePlan& plan, QStringView national);

/// Whether the plan is that of an island with one area code, "268+4[56],71", and exchanges there begin with the first
/// of the digits.
bool IsExchangeOfIsland(const PhonePlan& plan, QStringView digits);

/// The plans of all regions, by region.
std::pair<const PhonePlan*, const PhonePlan*> AllPlans();

} // namespace Brindle
