#include "page/MarkupFormText.h"

#include "page/MarkupScanner.h"
#include "toolkit/Ascii.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace Brindle {

namespace {

enum class Kind {
    Plain,  // stands bare when its value allows it
    Quoted, // an address or a style: never bare
    Boolean // stands by its name alone
};

struct KnownAttribute {
    std::string_view Name;
    Kind Of = Kind::Plain;
    std::u16string_view Written = {}; // the mixed case of old engines, where they had one
};

// The index of attributes of HTML 4.01, sorted.
constexpr auto knownAttributes = std::to_array<KnownAttribute>({
    {"abbr"},
    {"accept"},
    {"accept-charset"},
    {"accesskey", Kind::Plain, u"accessKey"},
    {"action", Kind::Quoted},
    {"align"},
    {"alink"},
    {"alt"},
    {"archive"},
    {"axis"},
    {"background", Kind::Quoted},
    {"bgcolor", Kind::Plain, u"bgColor"},
    {"border"},
    {"cellpadding", Kind::Plain, u"cellPadding"},
    {"cellspacing", Kind::Plain, u"cellSpacing"},
    {"char"},
    {"charoff"},
    {"charset"},
    {"checked", Kind::Boolean},
    {"cite", Kind::Quoted},
    {"class"},
    {"classid"},
    {"clear"},
    {"code"},
    {"codebase", Kind::Quoted},
    {"codetype"},
    {"color"},
    {"cols"},
    {"colspan", Kind::Plain, u"colSpan"},
    {"compact", Kind::Boolean},
    {"content"},
    {"coords"},
    {"data", Kind::Quoted},
    {"datetime", Kind::Plain, u"dateTime"},
    {"declare", Kind::Boolean},
    {"defer", Kind::Boolean},
    {"dir"},
    {"disabled", Kind::Boolean},
    {"enctype", Kind::Plain, u"encType"},
    {"face"},
    {"for"},
    {"frame"},
    {"frameborder", Kind::Plain, u"frameBorder"},
    {"headers"},
    {"height"},
    {"href", Kind::Quoted},
    {"hreflang"},
    {"hspace"},
    {"http-equiv"},
    {"id"},
    {"ismap", Kind::Boolean},
    {"label"},
    {"lang"},
    {"language"},
    {"link"},
    {"longdesc", Kind::Quoted},
    {"marginheight", Kind::Plain, u"marginHeight"},
    {"marginwidth", Kind::Plain, u"marginWidth"},
    {"maxlength", Kind::Plain, u"maxLength"},
    {"media"},
    {"method"},
    {"multiple", Kind::Boolean},
    {"name"},
    {"nohref", Kind::Boolean},
    {"noresize", Kind::Boolean},
    {"noshade", Kind::Boolean},
    {"nowrap", Kind::Boolean, u"noWrap"},
    {"object"},
    {"onblur"},
    {"onchange"},
    {"onclick"},
    {"ondblclick"},
    {"onfocus"},
    {"onkeydown"},
    {"onkeypress"},
    {"onkeyup"},
    {"onload"},
    {"onmousedown"},
    {"onmousemove"},
    {"onmouseout"},
    {"onmouseover"},
    {"onmouseup"},
    {"onreset"},
    {"onselect"},
    {"onsubmit"},
    {"onunload"},
    {"profile"},
    {"prompt"},
    {"readonly", Kind::Boolean, u"readOnly"},
    {"rel"},
    {"rev"},
    {"rows"},
    {"rowspan", Kind::Plain, u"rowSpan"},
    {"rules"},
    {"scheme"},
    {"scope"},
    {"scrolling"},
    {"selected", Kind::Boolean},
    {"shape"},
    {"size"},
    {"span"},
    {"src", Kind::Quoted},
    {"standby"},
    {"start"},
    {"style", Kind::Quoted},
    {"summary"},
    {"tabindex", Kind::Plain, u"tabIndex"},
    {"target"},
    {"text"},
    {"title"},
    {"type"},
    {"usemap", Kind::Quoted, u"useMap"},
    {"valign", Kind::Plain, u"vAlign"},
    {"value"},
    {"valuetype"},
    {"version"},
    {"vlink"},
    {"vspace"},
    {"width"},
});
static_assert(std::is_sorted(knownAttributes.begin(), knownAttributes.end(),
                             [](const auto& a, const auto& b) { return a.Name < b.Name; }));

const KnownAttribute* Known(QStringView name) {
    std::array<char, 16> key; // longer than every known name
    if (name.size() > static_cast<qsizetype>(key.size()))
        return nullptr;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t c = name[i].unicode();
        if (c > 0x7f)
            return nullptr;
        key[static_cast<size_t>(i)] = static_cast<char>(Ascii::Lower(c));
    }
    const std::string_view wanted(key.data(), static_cast<size_t>(name.size()));
    const auto found = std::lower_bound(knownAttributes.begin(), knownAttributes.end(), wanted,
                                        [](const KnownAttribute& a, std::string_view b) { return a.Name < b; });
    return found != knownAttributes.end() && found->Name == wanted ? &*found : nullptr;
}

bool StandsBare(QStringView value) {
    return !value.isEmpty() && std::all_of(value.begin(), value.end(),
                                           [](QChar c) { return Ascii::IsLetterOrDigit(c) || c == u'_' || c == u'-'; });
}

// Copies the page over run by run; between the runs stands what is written differently.
class LegacyWriter {
public:
    explicit LegacyWriter(QStringView html) : html_(html), scanner_(html, MarkupScanner::Reading::Serialisation) {
        out_.reserve(html.size());
    }

    QString Write() {
        while (scanner_.NextTag())
            WriteTag();
        CopyUpTo(html_.size());
        return std::move(out_);
    }

private:
    void WriteTag() {
        const qsizetype written = out_.size();
        const qsizetype copied = copied_;
        CopyUpTo(scanner_.NameBegin());
        WriteUpperCased(scanner_.Name());
        copied_ = scanner_.NameEnd();
        while (scanner_.NextAttribute())
            WriteAttribute(scanner_.Current());
        if (!scanner_.Closed()) {
            // The page ends within this tag, so it is none.
            out_.truncate(written);
            copied_ = copied;
        }
    }

    void WriteAttribute(const MarkupScanner::Attribute& attribute) {
        const KnownAttribute* const known = Known(attribute.Name);
        if (!known)
            return;
        if (!known->Written.empty()) {
            CopyUpTo(attribute.Begin);
            out_.append(QStringView(known->Written));
            copied_ = attribute.Begin + attribute.Name.size();
        }
        const QChar next = attribute.End < html_.size() ? html_[attribute.End] : QChar();
        const bool separated = Ascii::IsBlank(next) || next == u'>';
        if (known->Of == Kind::Boolean && (separated || next == u'/')) {
            CopyUpTo(attribute.Begin + attribute.Name.size());
            copied_ = attribute.End;
        } else if (known->Of == Kind::Plain && separated && StandsBare(attribute.Value)) {
            CopyUpTo(attribute.Begin + attribute.Name.size());
            out_.append(u'=');
            out_.append(attribute.Value);
            copied_ = attribute.End;
        }
    }

    void WriteUpperCased(QStringView name) {
        for (const QChar c : name)
            out_.append(Ascii::Upper(c));
    }

    void CopyUpTo(qsizetype end) {
        out_.append(html_.mid(copied_, end - copied_));
        copied_ = end;
    }

    QStringView html_;
    MarkupScanner scanner_;
    QString out_;
    qsizetype copied_ = 0;
};

} // namespace

QString ToLegacyForm(const QString& html) {
    return LegacyWriter(html).Write();
}

QString InMarkupForm(const QString& html, MarkupForm form) {
    return form == MarkupForm::Legacy ? ToLegacyForm(html) : html;
}

} // namespace Brindle
