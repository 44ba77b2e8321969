#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace Brindle {

/// One search to be made: from a start address, or for something somewhere.
struct SearchRow {
    int Line = 0; ///< in the table, from 1 on
    QString Site;
    QString Start;
    QString What;
    QString Place;

    bool operator==(const SearchRow&) const = default;
};

/// Why a search cannot be made.
struct SearchFault {
    enum class Why {
        None,
        Header,
        OpenQuote,
        Columns,          ///< how many there are, how many there must be
        NoAddress,        ///< the start
        NothingAsked,     ///< neither what nor where
        UnknownDirectory, ///< its code
        NoSearchAddress,  ///< the directory's code
        Directory         ///< what is wrong with the directory
    };
    Why Kind = Why::None;
    QStringList Values;

    /// In English.
    QString Text() const;
};

/// A row of a table that is wrong.
struct SearchProblem {
    int Line = 0;
    SearchFault Fault;

    /// "line 3: …"
    QString Text() const;
};

/// What a table of searches holds, and what is wrong with it.
struct SearchTable {
    std::vector<SearchRow> Rows;
    std::vector<SearchProblem> Problems;

    /// Tells a table with the same searches from others, wherever it lies.
    QString Digest() const;
};

/// The bytes of a file as text: UTF-8 or UTF-16 as a byte-order mark says, UTF-8 without one, Latin-1 when it is not.
QString TableText(const QByteArray& bytes);

/// Whether a table has to begin with its header.
enum class TableHeader { Needed, Optional };

/// Reads a table of searches: the header `site,start` or `site,what,where`, then a search a line; commas, semicolons or
/// tabs between the columns, as the header has them, and quotes around what holds one (RFC 4180), so that a table can
/// be pasted from a spreadsheet too. Starts are http or https. `whyNot` says why a site and its search cannot be made;
/// it may put a site's code in the place of its name. Where the header may be missing, two columns are site and start,
/// three site, what and where.
SearchTable ReadSearchTable(const QString& text, const std::function<SearchFault(SearchRow&)>& whyNot,
                            TableHeader header = TableHeader::Needed);

} // namespace Brindle
