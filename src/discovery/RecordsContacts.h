#pragma once

#include "core/Lead.h"
#include "discovery/RecordsColumns.h"

#include <QHash>

#include <array>

namespace Brindle {

/// The phones, addresses of the web and of mail of a list's records.
class RecordContacts {
public:
    explicit RecordContacts(const RecordColumns& columns);

    /// Fills the fields of one record; `nodes` gets the element that each value was taken from.
    void Read(size_t record, NodeIndex name, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;

private:
    void ReadPhones(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    void ReadMails(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    void ReadLinks(size_t record, NodeIndex name, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    void ReadLabelledPhone(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    void ReadPhoneOfColumn(size_t record, Lead& lead, std::array<NodeIndex, FieldCount>& nodes) const;
    HintSet KindOf(const PagePhone& phone, qsizetype from, size_t record) const;
    HintSet IconsBefore(NodeIndex node, NodeIndex from) const;
    bool SaysWebsite(const PageLink& link, const QString& text, const RecordRange& range) const;

    const RecordColumns& columns_;
    const PageAnnotations& page_;
    struct Uses {
        size_t Last = 0; ///< record
        int Records = 0;
    };
    QHash<QString, Uses> phones_; // in how many records a number stands
    quint64 phonePath_ = 0;       // where most records have their phone; 0: at no place in common
    QHash<QString, Uses> hosts_;
    QHash<QString, Uses> mails_;
};

/// An address that a text is ("www.joes.example"), as one of the web; empty when it is none.
QString WebAddressIn(QStringView text);

/// Where a link leads that only counts and passes on, "https://site/out?url=https%3A%2F%2Fwww.joes.example"; empty when
/// it is none.
QString RedirectTarget(const QString& address);

} // namespace Brindle
