#include "toolkit/Phone.h"
#include "toolkit/PhoneText.h"

#include <algorithm>
#include <array>
#include <span>
#include <vector>

using namespace Qt::StringLiterals;

namespace Brindle {

namespace {

constexpr QStringView faxWords[] = {u"fax",  u"telefax", u"факс",       u"faks",      u"φαξ", u"传真",
                                    u"傳真", u"팩스",    u"ファックス", u"télécopie", u"fx"};
constexpr QStringView phoneWords[] = {
    u"tel",
    u"telephone",
    u"telefon",
    u"telefono",
    u"teléfono",
    u"telefone",
    u"téléphone",
    u"tél",
    u"telf",
    u"tlf",
    u"tlfn",
    u"tfn",
    u"tlfno",
    u"telefoon",
    u"telefoonnummer",
    u"telefonnummer",
    u"telefonszám",
    u"telefonas",
    u"telefonnr",
    u"phone",
    u"phones",
    u"ph",
    u"call",
    u"mobile",
    u"mobil",
    u"mob",
    u"mobiel",
    u"mobiltelefon",
    u"cell",
    u"cellulare",
    u"cell phone",
    u"celular",
    u"cel",
    u"handy",
    u"natel",
    u"gsm",
    u"móvil",
    u"movil",
    u"portable",
    u"telemóvel",
    u"tlm",
    u"komórka",
    u"kom",
    u"puhelin",
    u"puh",
    u"sími",
    u"hotline",
    u"freephone",
    u"toll-free",
    u"tollfree",
    u"whatsapp",
    u"rufnummer",
    u"festnetz",
    u"zentrale",
    u"numero",
    u"tel/fax",
    u"hívjon",
    u"fon",
    u"fono",
    u"тел",
    u"телефон",
    u"моб",
    u"τηλ",
    u"τηλέφωνο",
    u"κιν",
    u"電話",
    u"電話番号",
    u"电话",
    u"전화",
    u"연락처",
    u"โทร",
    u"điện thoại",
    u"đt",
    u"هاتف",
    u"טלפון",
    u"numer",
    u"teл",
    u"telefonas",
    u"tālr",
    u"tālrunis",
    u"ara",
    u"dial",
    u"sms",
    u"landline",
    u"office",
    u"free",
    u"フリーダイヤル",
};
// Numbers of other kinds announce themselves, too.
constexpr QStringView otherWords[] = {
    u"id",   u"ref",  u"reg",  u"vat",   u"ust",       u"ustid",   u"ust-id",   u"hrb",     u"hra",
    u"isbn", u"iban", u"nip",  u"regon", u"krs",       u"siret",   u"siren",    u"cif",     u"nif",
    u"kvk",  u"iva",  u"piva", u"bic",   u"abn",       u"acn",     u"order",    u"invoice", u"art",
    u"item", u"sku",  u"ean",  u"gln",   u"konto",     u"account", u"licence",  u"license", u"lic",
    u"cvr",  u"org",  u"ico",  u"ičo",   u"dič",       u"box",     u"postfach", u"article", u"rcs",
    u"ein",  u"lat",  u"lon",  u"lng",   u"gps",       u"inn",     u"инн",      u"огрн",    u"version",
    u"code", u"pin",  u"seit", u"since", u"copyright", u"©",       u"rok",
};

// Words that announce a number, in any case.
class Announcements {
public:
    explicit Announcements(std::span<const QStringView> words) : all_(words) {
        for (const QStringView word : words)
            if (word.front().unicode() < byFirst_.size())
                byFirst_[word.front().unicode()].push_back(word);
    }

    // Most words begin with another letter than those of the list; letters of Latin fold as ASCII's do or not at all.
    bool Have(QStringView word) const {
        const std::size_t first = word.front().unicode();
        const std::span<const QStringView> words = first < byFirst_.size() ? byFirst_[(first | 0x20) % 0x80] : all_;
        return std::any_of(words.begin(), words.end(), [word](QStringView one) {
            return one.size() == word.size() && one.compare(word, Qt::CaseInsensitive) == 0;
        });
    }

private:
    std::span<const QStringView> all_;
    std::array<std::vector<QStringView>, 0x80> byFirst_;
};

bool IsFaxWord(QStringView word) {
    static const Announcements words(faxWords);
    const bool mayEnd = word.size() > 3 && (word.back() == u'x' || word.back() == u'X');
    return words.Have(word) || (mayEnd && word.endsWith(u"fax", Qt::CaseInsensitive));
}

bool IsPhoneWord(QStringView word) {
    static const Announcements words(phoneWords);
    return words.Have(word);
}

bool IsOtherWord(QStringView word) {
    static const Announcements words(otherWords);
    return words.Have(word);
}

bool EndsWithPhoneSign(QStringView text) {
    const QStringView tail = text.last(qMin<qsizetype>(text.size(), 6));
    // None of the signs is one of the characters of which most texts are made.
    if (std::none_of(tail.begin(), tail.end(), [](QChar c) { return c.unicode() >= 0x2000; }))
        return false;
    return tail.contains(u"☎") || tail.contains(u"✆") || tail.contains(u"℡") || tail.contains(u"📞") ||
           tail.contains(u"📱");
}

// The last word before a number, without the punctuation behind it.
QStringView LastWord(QStringView text, bool& punctuated) {
    text = text.last(qMin<qsizetype>(text.size(), 32));
    punctuated = false;
    const auto skip = [&text, &punctuated](QStringView marks) {
        while (!text.isEmpty() && (IsPhoneBlank(text.back()) || text.back() == u'\n' || marks.contains(text.back()))) {
            punctuated = punctuated || marks.contains(text.back());
            text.chop(1);
        }
    };
    skip(u":.=|([：）)/");
    const auto mayFill = [](QChar c) {
        const char16_t u = c.unicode();
        return u >= 0x80 || u == u'#' || QStringView(u"orsORS").contains(c);
    };
    if (text.isEmpty() || mayFill(text.back()))
        for (const QStringView filler : {u"no", u"nr", u"n°", u"nº", u"number", u"us", u"#"})
            if (text.endsWith(filler, Qt::CaseInsensitive) && text.size() > filler.size() &&
                !text[text.size() - filler.size() - 1].isLetter()) {
                text.chop(filler.size());
                skip(u":.(/");
                break;
            }
    qsizetype begin = text.size();
    while (begin > 0 && (text[begin - 1].isLetter() || text[begin - 1] == u'-' || text[begin - 1].isMark() ||
                         text[begin - 1] == u'©'))
        --begin;
    return text.sliced(begin);
}

} // namespace

Announced WhatIsAnnounced(QStringView before, bool* fax) {
    if (fax)
        *fax = false;
    bool punctuated = false;
    const QStringView word = LastWord(before, punctuated);
    if (word.isEmpty())
        return EndsWithPhoneSign(before) ? Announced::Phone : Announced::Nothing;
    if (word.size() == 1 && punctuated) {
        const char16_t letter = word.front().unicode() | 0x20;
        if (letter == u'f' && fax)
            *fax = true;
        if (letter == u't' || letter == u'f' || letter == u'm' || letter == u'p')
            return Announced::Phone;
    }
    if (IsFaxWord(word)) {
        if (fax)
            *fax = true;
        return Announced::Phone;
    }
    if (IsPhoneWord(word) || (IsPhoneIdeograph(word.back()) && (word.endsWith(u"電話") || word.endsWith(u"电话"))))
        return Announced::Phone;
    return IsOtherWord(word) || before.endsWith(u'#') ? Announced::Other : Announced::Nothing;
}

bool EndsWithPhoneLabel(QStringView text, bool* fax) {
    return WhatIsAnnounced(text, fax) == Announced::Phone;
}

} // namespace Brindle
