#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace Brindle {

/// What of a page's JSON is read at most; the rest is left out.
struct JsonBounds {
    qsizetype Size = 16 * 1024 * 1024; ///< characters of one text
    int Depth = 64;                    ///< what lies deeper is left out
    int Values = 1'000'000;            ///< of all texts together
};

enum class JsonKind : quint8 { Null, Boolean, Number, Text, Array, Object };

/// A value of a JSON text; its children follow each other by `Next`.
struct JsonValue {
    JsonKind Kind = JsonKind::Null;
    QString Key;    ///< its name in the object that holds it
    QString Text;   ///< of a text; a number or boolean as it is written
    int First = -1; ///< number of the first child of an array or object; -1 for none
    int Next = -1;  ///< number of the next child of the same parent; -1 for none
};

/// Reads JSON as pages have it (RFC 8259, and what people get wrong): comments, commas too many or missing, line ends
/// and control characters in texts, several values one after the other, wrappers of HTML comments and CDATA, quotation
/// marks as entities, single quotation marks, names without any, escapes that are none, an end that is missing. What
/// cannot be understood is skipped; what was read before stays. Linear.
class JsonText {
public:
    explicit JsonText(const JsonBounds& bounds = {}) : bounds_(bounds) {}

    /// Reads one text; the numbers of its outermost values.
    std::vector<int> Read(QStringView text);

    const JsonValue& At(int value) const { return values_[static_cast<size_t>(value)]; }

private:
    class Reader;

    JsonBounds bounds_;
    std::vector<JsonValue> values_;
};

} // namespace Brindle
