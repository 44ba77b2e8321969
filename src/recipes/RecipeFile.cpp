#include "recipes/RecipeFile.h"

#include "core/Errors.h"
#include "discovery/StructuredLinks.h"
#include "page/Selector.h"
#include "recipes/RecipePattern.h"
#include "recipes/RecipeValue.h"
#include "recipes/SearchAddressOf.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

#include <algorithm>
#include <toml++/toml.h>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestText = 2000;

QString TextOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

struct Problem {
    qint64 Line;
    QString Reason;
};

// Reads a table key by key and notes what is wrong.
class TableReader {
public:
    TableReader(const toml::table& table, QString name, std::vector<Problem>& problems)
        : table_(table), name_(std::move(name)), problems_(problems) {}

    qint64 Line() const { return std::max<qint64>(1, static_cast<qint64>(table_.source().begin.line)); }
    void Report(qint64 line, QString reason) { problems_.push_back({line, std::move(reason)}); }
    QString NameOf(std::string_view key) const {
        const QString bare = TextOf(key);
        return name_.isEmpty() ? bare : QString(name_ + u'.' + bare);
    }

    const toml::node* Take(std::string_view key) {
        known_.push_back(key);
        return table_.get(key);
    }

    QString Text(std::string_view key, bool required = false) {
        const toml::node* node = Take(key);
        if (!node) {
            if (required)
                Report(Line(), u"%1 is missing"_s.arg(NameOf(key)));
            return {};
        }
        return TextOfNode(*node, NameOf(key));
    }

    QString TextOfNode(const toml::node& node, const QString& name) {
        if (!node.is_string()) {
            Report(LineOf(node), u"%1 is no text"_s.arg(name));
            return {};
        }
        QString text = TextOf(node.as_string()->get());
        if (text.trimmed().isEmpty())
            Report(LineOf(node), u"%1 is empty"_s.arg(name));
        else if (text.size() > longestText)
            Report(LineOf(node), u"%1 has more than %2 characters"_s.arg(name).arg(longestText));
        else if (std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.unicode() < u' '; }))
            Report(LineOf(node), u"%1 has a line break or another control character"_s.arg(name));
        return text;
    }

    QString SelectorText(std::string_view key, bool required) {
        QString text = Text(key, required);
        if (!text.isEmpty())
            CheckSelector(text, LineOfKey(key), NameOf(key));
        return text;
    }

    void CheckSelector(const QString& text, qint64 line, const QString& name) {
        try {
            Selector::Parse(text);
        } catch (const Failure& failure) {
            Report(line, u"%1: %2"_s.arg(name, failure.Message()));
        }
    }

    bool Flag(std::string_view key) {
        const toml::node* node = Take(key);
        if (node && !node->is_boolean())
            Report(LineOf(*node), u"%1 is neither true nor false"_s.arg(NameOf(key)));
        return node && node->is_boolean() && node->as_boolean()->get();
    }

    int Number(std::string_view key, bool required, int most) {
        const toml::node* node = Take(key);
        if (!node) {
            if (required)
                Report(Line(), u"%1 is missing"_s.arg(NameOf(key)));
            return 0;
        }
        const qint64 value = node->is_integer() ? node->as_integer()->get() : -1;
        if (value >= 0 && value <= most)
            return static_cast<int>(value);
        Report(LineOf(*node), u"%1 is no number from 0 to %2"_s.arg(NameOf(key)).arg(most));
        return 0;
    }

    const toml::table* Table(std::string_view key, bool required) {
        const toml::node* node = Take(key);
        if (node && node->is_table())
            return node->as_table();
        if (node)
            Report(LineOf(*node), u"%1 is no table"_s.arg(NameOf(key)));
        else if (required)
            Report(Line(), u"%1 is missing"_s.arg(NameOf(key)));
        return nullptr;
    }

    qint64 LineOfKey(std::string_view key) const {
        const toml::node* node = table_.get(key);
        return node ? LineOf(*node) : Line();
    }
    static qint64 LineOf(const toml::node& node) {
        return std::max<qint64>(1, static_cast<qint64>(node.source().begin.line));
    }

    // What nobody took is no key.
    void ReportOthers() {
        for (const auto& [key, node] : table_)
            if (std::find(known_.begin(), known_.end(), key.str()) == known_.end())
                Report(std::max<qint64>(1, static_cast<qint64>(key.source().begin.line)),
                       u"%1 is no key of a recipe"_s.arg(NameOf(key.str())));
    }

    const toml::table& All() const { return table_; }

private:
    const toml::table& table_;
    QString name_;
    std::vector<Problem>& problems_;
    std::vector<std::string_view> known_;
};

class RecipeParser {
public:
    Recipe Parse(const toml::table& table) {
        TableReader top(table, {}, problems_);
        recipe_.Name = top.Text("name", true);
        recipe_.Country = top.Text("country");
        recipe_.Home = top.Text("home", true);
        CheckAddress(top, "home", recipe_.Home);
        recipe_.Search = top.Text("search");
        CheckSearch(top);
        if (const toml::table* list = top.Table("list", true))
            ParseList(*list);
        if (const toml::table* fields = top.Table("fields", recipe_.Records != structuredRecords))
            recipe_.Fields = ParseFields(*fields, u"fields"_s);
        if (const toml::node* next = top.Take("next"))
            ParseNext(top, *next);
        if (const toml::table* details = top.Table("details", false))
            ParseDetails(*details);
        if (const toml::table* taught = top.Table("taught", false))
            ParseTaught(*taught);
        top.ReportOthers();
        CheckWhole(top);
        return std::move(recipe_);
    }

    /// The first thing that is wrong; null when nothing is.
    const Problem* FirstProblem() const {
        const auto first = std::min_element(problems_.begin(), problems_.end(),
                                            [](const Problem& a, const Problem& b) { return a.Line < b.Line; });
        return first == problems_.end() ? nullptr : &*first;
    }

private:
    static bool Has(const std::vector<RecipeField>& fields, Field column) {
        return std::any_of(fields.begin(), fields.end(), [&](const RecipeField& f) { return f.Column == column; });
    }

    void CheckAddress(TableReader& top, std::string_view key, const QString& address) {
        if (!address.isEmpty() && HostOfAddress(address).isEmpty())
            top.Report(top.LineOfKey(key), u"%1 is no address of http or https"_s.arg(top.NameOf(key)));
    }

    void CheckSearch(TableReader& top) {
        if (recipe_.Search.isEmpty())
            return;
        if (const QString reason = WhyNoSearchAddress(recipe_.Search); !reason.isEmpty())
            top.Report(top.LineOfKey("search"), reason);
    }

    void ParseList(const toml::table& table) {
        TableReader list(table, u"list"_s, problems_);
        recipe_.Records = list.SelectorText("records", true);
        recipe_.Flat = list.Flag("flat");
        if (recipe_.Flat && recipe_.Records == structuredRecords)
            list.Report(list.LineOfKey("flat"), u"list.flat needs a selector of the records"_s);
        list.ReportOthers();
    }

    std::vector<RecipeField> ParseFields(const toml::table& table, const QString& name) {
        TableReader reader(table, name, problems_);
        std::vector<RecipeField> fields;
        for (int column = 0; column < FieldCount; ++column) {
            const std::string caption = EnglishCaptions()[column].toStdString();
            const toml::node* node = table.get(caption);
            if (!node)
                continue;
            RecipeField field;
            field.Column = static_cast<Field>(column);
            const QString fieldName = reader.NameOf(caption);
            if (node->is_table()) {
                ParseField(*node->as_table(), fieldName, field);
            } else {
                field.Selector = reader.TextOfNode(*node, fieldName);
                if (!field.Selector.isEmpty())
                    reader.CheckSelector(field.Selector, TableReader::LineOf(*node), fieldName);
            }
            fields.push_back(std::move(field));
        }
        for (const auto& [key, node] : table)
            if (!EnglishCaptions().contains(TextOf(key.str())))
                reader.Report(std::max<qint64>(1, static_cast<qint64>(key.source().begin.line)),
                              u"%1: there is no field of that name; there are %2"_s.arg(reader.NameOf(key.str()),
                                                                                        EnglishCaptions().join(u", ")));
        return fields;
    }

    void ParseField(const toml::table& table, const QString& name, RecipeField& field) {
        TableReader reader(table, name, problems_);
        field.Selector = reader.SelectorText("selector", true);
        field.Attribute = reader.Text("attribute");
        CheckAttribute(reader, field.Attribute);
        field.Pattern = reader.Text("pattern");
        if (const QString reason = RecipePattern::ProblemOf(field.Pattern); !reason.isEmpty())
            reader.Report(reader.LineOfKey("pattern"), u"%1: %2"_s.arg(reader.NameOf("pattern"), reason));
        field.Join = reader.Flag("join");
        if (field.Join && (IsLinkColumn(field.Column) || field.Column == Field::Email))
            reader.Report(reader.LineOfKey("join"), u"%1: only texts can be joined"_s.arg(reader.NameOf("join")));
        field.SplitAddress = reader.Flag("split_address");
        if (field.SplitAddress && field.Column != Field::FullAddress)
            reader.Report(reader.LineOfKey("split_address"),
                          u"%1: only Full Address can be taken apart"_s.arg(reader.NameOf("split_address")));
        reader.ReportOthers();
    }

    static void CheckAttribute(TableReader& reader, const QString& attribute) {
        const auto isPart = [](QChar c) {
            return c.unicode() < 128 &&
                   (c.isLower() || c.isDigit() || c == u'-' || c == u'_' || c == u':' || c == u'.');
        };
        if (!std::all_of(attribute.cbegin(), attribute.cend(), isPart))
            reader.Report(reader.LineOfKey("attribute"),
                          u"%1: \u201C%2\u201D is no attribute's name in lower case"_s.arg(reader.NameOf("attribute"),
                                                                                           attribute));
    }

    void ParseNext(TableReader& top, const toml::node& node) {
        if (node.is_table()) {
            TableReader next(*node.as_table(), u"next"_s, problems_);
            recipe_.Next = next.SelectorText("selector", true);
            recipe_.NextAttribute = next.Text("attribute");
            CheckAttribute(next, recipe_.NextAttribute);
            if (recipe_.Next == automaticNextPage && !recipe_.NextAttribute.isEmpty())
                next.Report(next.LineOfKey("attribute"), u"next.attribute needs a selector of its own"_s);
            next.ReportOthers();
            return;
        }
        recipe_.Next = top.TextOfNode(node, u"next"_s);
        if (recipe_.Next != automaticNextPage && !recipe_.Next.isEmpty())
            top.CheckSelector(recipe_.Next, TableReader::LineOf(node), u"next"_s);
    }

    void ParseDetails(const toml::table& table) {
        TableReader details(table, u"details"_s, problems_);
        recipe_.Details = true;
        recipe_.DetailsLink = details.SelectorText("link", false);
        if (const toml::table* fields = details.Table("fields", false)) {
            recipe_.DetailsFields = ParseFields(*fields, u"details.fields"_s);
            if (recipe_.DetailsFields.empty())
                details.Report(TableReader::LineOf(*fields), u"details.fields has no field"_s);
        }
        if (recipe_.DetailsLink.isEmpty() && !Has(recipe_.Fields, Field::DetailsLink) &&
            recipe_.Records != structuredRecords)
            details.Report(details.Line(), u"details.link is missing, and no field Details Link stands in for it"_s);
        details.ReportOthers();
    }

    void ParseTaught(const toml::table& table) {
        constexpr int most = 1'000'000;
        TableReader taught(table, u"taught"_s, problems_);
        recipe_.Taught.Records = taught.Number("records", true, most);
        if (const toml::table* counts = taught.Table("filled", false)) {
            TableReader filled(*counts, u"taught.filled"_s, problems_);
            std::vector<std::string> captions;
            for (const QString& caption : EnglishCaptions())
                captions.push_back(caption.toStdString());
            for (size_t column = 0; column < captions.size(); ++column)
                recipe_.Taught.Filled[column] = filled.Number(captions[column], false, recipe_.Taught.Records);
            filled.ReportOthers();
        }
        taught.ReportOthers();
    }

    void CheckWhole(TableReader& top) {
        if (recipe_.Records != structuredRecords && top.All().get("fields") &&
            !Has(recipe_.Fields, Field::BusinessName))
            top.Report(top.LineOfKey("fields"), u"fields.Business Name is missing"_s);
    }

    Recipe recipe_;
    std::vector<Problem> problems_;
};

// ----------------------------------------------------------------------------------------------------------- writing

// A text in the quotation marks that leave it readable.
QString Quoted(const QString& text) {
    const bool plain = std::none_of(text.cbegin(), text.cend(),
                                    [](QChar c) { return c == u'\'' || c.unicode() < u' ' || c == u'\u007f'; });
    if (plain && (text.contains(u'\\') || text.contains(u'"')))
        return u'\'' + text + u'\'';
    QString quoted = u"\""_s;
    for (const QChar c : text) {
        if (c == u'"' || c == u'\\')
            quoted += u'\\';
        if (c.unicode() < u' ' || c == u'\u007f')
            quoted += u"\\u%1"_s.arg(static_cast<int>(c.unicode()), 4, 16, QChar(u'0'));
        else
            quoted += c;
    }
    return quoted + u'"';
}

QString KeyOf(Field column) {
    const QString& caption = EnglishCaptions()[static_cast<int>(column)];
    return caption.contains(u' ') ? QString(u'"' + caption + u'"') : caption;
}

void AppendFields(QString& text, const std::vector<RecipeField>& fields) {
    for (const RecipeField& field : fields) {
        text += KeyOf(field.Column) + u" = ";
        QStringList more;
        if (!field.Attribute.isEmpty())
            more.append(u"attribute = "_s + Quoted(field.Attribute));
        if (!field.Pattern.isEmpty())
            more.append(u"pattern = "_s + Quoted(field.Pattern));
        if (field.Join)
            more.append(u"join = true"_s);
        if (field.SplitAddress)
            more.append(u"split_address = true"_s);
        if (more.isEmpty())
            text += Quoted(field.Selector);
        else
            text += u"{ selector = "_s + Quoted(field.Selector) + u", " + more.join(u", ") + u" }";
        text += u'\n';
    }
}

void AppendText(QString& text, QStringView key, const QString& value) {
    if (!value.isEmpty())
        text += key + u" = " + Quoted(value) + u'\n';
}

} // namespace

Recipe ReadRecipe(const QByteArray& bytes, const QString& fileName) {
    const QString shown = QDir::toNativeSeparators(fileName);
    const auto fail = [&shown](qint64 line, const QString& reason) -> Failure {
        return Failure(u"%1: line %2: %3"_s.arg(shown).arg(line).arg(reason));
    };
    if (bytes.size() > longestRecipe)
        throw Failure(u"%1: too large for a recipe"_s.arg(shown));
    toml::table table;
    try {
        table = toml::parse(std::string_view(bytes.constData(), static_cast<size_t>(bytes.size())));
    } catch (const toml::parse_error& error) {
        throw fail(error.source().begin.line, TextOf(error.description()).simplified());
    }
    RecipeParser parser;
    Recipe recipe = parser.Parse(table);
    if (const Problem* problem = parser.FirstProblem())
        throw fail(problem->Line, problem->Reason);
    return recipe;
}

Recipe LoadRecipe(const QString& fileName) {
    QFile file(fileName);
    QByteArray bytes;
    if (file.open(QIODevice::ReadOnly))
        bytes = file.read(longestRecipe + 1);
    if (file.error() != QFileDevice::NoError)
        throw Failure(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
    return ReadRecipe(bytes, fileName);
}

QByteArray RecipeText(const Recipe& recipe, const QStringList& remarks) {
    QString text;
    for (const QString& remark : remarks)
        text += u"# " + remark.simplified() + u'\n';
    AppendText(text, u"name", recipe.Name);
    AppendText(text, u"country", recipe.Country);
    AppendText(text, u"home", recipe.Home);
    AppendText(text, u"search", recipe.Search);
    if (recipe.NextAttribute.isEmpty())
        AppendText(text, u"next", recipe.Next);
    text += u"\n[list]\nrecords = " + Quoted(recipe.Records) + u'\n';
    if (recipe.Flat)
        text += u"flat = true\n";
    if (!recipe.Fields.empty()) {
        text += u"\n[fields]\n";
        AppendFields(text, recipe.Fields);
    }
    if (!recipe.NextAttribute.isEmpty()) {
        text += u"\n[next]\nselector = " + Quoted(recipe.Next) + u'\n';
        AppendText(text, u"attribute", recipe.NextAttribute);
    }
    if (recipe.Details) {
        text += u"\n[details]\n";
        AppendText(text, u"link", recipe.DetailsLink);
        if (!recipe.DetailsFields.empty()) {
            text += u"\n[details.fields]\n";
            AppendFields(text, recipe.DetailsFields);
        }
    }
    if (recipe.Taught.Records > 0) {
        text += u"\n[taught]\nrecords = " + QString::number(recipe.Taught.Records) + u"\n\n[taught.filled]\n";
        for (int column = 0; column < FieldCount; ++column)
            if (const int filled = recipe.Taught.Filled[static_cast<size_t>(column)]; filled > 0)
                text += KeyOf(static_cast<Field>(column)) + u" = " + QString::number(filled) + u'\n';
    }
    return text.toUtf8();
}

void SaveRecipe(const Recipe& recipe, const QString& fileName) {
    const QByteArray bytes = RecipeText(recipe);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        throw SaveError(u"%1: %2"_s.arg(QDir::toNativeSeparators(fileName), file.errorString()));
}

} // namespace Brindle
