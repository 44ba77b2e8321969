// Examples that stand without elements of their own: among the lines of a text, behind labels, in other forms.
#include "core/Errors.h"
#include "recipes/LearnRecipe.h"
#include "recipes/RecipeReader.h"

#include <gtest/gtest.h>

namespace Brindle {
namespace {

using namespace Qt::StringLiterals;

const QString url = u"https://www.dir.example.de/liste"_s;

struct Form {
    const char* Name;
    QString Holder; // %1: the entries
    QString Entry;  // {c} a letter, {i} a digit
    QString Bare;   // an entry without phone and website, when they are left out of every third one
    std::vector<RecipeExample> Examples;
    Lead Fourth;
};

void PrintTo(const Form& form, std::ostream* out) {
    *out << form.Name;
}

class LearnLines : public testing::TestWithParam<Form> {};

TEST_P(LearnLines, GivesTheFourthEntry) {
    const Form& form = GetParam();
    QString entries;
    for (int i = 1; i <= 8; ++i)
        entries += QString(i % 3 == 0 && !form.Bare.isEmpty() ? form.Bare : form.Entry)
                       .replace(u"{c}"_s, QChar(u'A' + i))
                       .replace(u"{i}"_s, QString::number(i));
    const PageTree page(u"<html lang=de><title>Elektriker</title><body><h1>Elektriker</h1>"_s +
                        form.Holder.arg(entries));
    const LearnedRecipe learned = LearnRecipe(page, url, form.Examples);
    const RecipeReading reading = RecipeReader(learned.What).Read(page, url);
    ASSERT_EQ(reading.Records.size(), 8U);
    const Lead& lead = reading.Records[3].Fields;
    for (const Field column : {Field::BusinessName, Field::FullAddress, Field::PostalCode, Field::City, Field::Phone,
                               Field::Website, Field::Email, Field::DetailsLink})
        EXPECT_EQ(lead.At(static_cast<int>(column)).toStdString(),
                  form.Fourth.At(static_cast<int>(column)).toStdString())
            << EnglishCaptions()[static_cast<int>(column)].toStdString();
    // What an entry does not have stays empty: its lines are not those of the others.
    if (!form.Bare.isEmpty()) {
        EXPECT_EQ(reading.Records[5].Fields.Phone.toStdString(), "");
        EXPECT_EQ(reading.Records[5].Fields.FullAddress.toStdString(), "Ringweg 6, 50667 Köln");
    }
}

const std::vector<RecipeExample> nameAddressPhone{{.Column = Field::BusinessName, .Text = u"Haus C"_s},
                                                  {.Column = Field::FullAddress, .Text = u"Ringweg 2, 50667 Köln"_s},
                                                  {.Column = Field::Phone, .Text = u"0221 555122"_s}};

Lead Expected(const QString& website = {}, const QString& mail = {}, const QString& details = {}) {
    Lead lead;
    lead.Name = u"Haus E"_s;
    lead.FullAddress = u"Ringweg 4, 50667 Köln"_s;
    lead.PostalCode = u"50667"_s;
    lead.City = u"Köln"_s;
    lead.Phone = u"0221 555124"_s;
    lead.Website = website;
    lead.Email = mail;
    lead.DetailsLink = details;
    return lead;
}

std::vector<RecipeExample> With(Field column, const QString& text) {
    std::vector<RecipeExample> examples = nameAddressPhone;
    examples.push_back({.Column = column, .Text = text});
    return examples;
}

INSTANTIATE_TEST_SUITE_P(
    Forms, LearnLines,
    testing::Values(
        Form{"LinesOfAnEntry", u"<ul>%1</ul>"_s,
             u"<li><b><a href='/b/{i}'>Haus {c}</a></b><br>Ringweg {i}, 50667 Köln<br>0221 55512{i}</li>"_s,
             u"<li><b><a href='/b/{i}'>Haus {c}</a></b><br>Ringweg {i}, 50667 Köln</li>"_s, nameAddressPhone,
             Expected({}, {}, u"https://www.dir.example.de/b/4"_s)},
        Form{"LinesBehindLabels",
             u"<div>%1</div>"_s,
             u"<div class=e><h3>Haus {c}</h3><p>Ringweg {i}<br>50667 Köln</p><p>Telefon: 0221 55512{i}<br>E-Mail: a{i} "
             u"[at] "
             "h.example.de<br>Web: www.h{i}.example.de</p></div>"_s,
             {},
             [] {
                 std::vector<RecipeExample> examples = With(Field::Email, u"a2@h.example.de"_s);
                 examples.push_back({.Column = Field::Website, .Text = u"www.h2.example.de"_s});
                 return examples;
             }(),
             Expected(u"http://www.h4.example.de"_s, u"a4@h.example.de"_s)},
        Form{"OneParagraph",
             u"<div>%1</div>"_s,
             u"<p><strong>Haus {c}</strong>, Ringweg {i}, 50667 Köln, Tel.: 0221 55512{i}</p>"_s,
             {},
             nameAddressPhone,
             Expected()},
        Form{"AllInOneBlock", u"<div class=text>%1</div>"_s,
             u"<b>Haus {c}</b><br>Ringweg {i}, 50667 Köln<br>Tel. 0221 55512{i}<br><br>"_s,
             u"<b>Haus {c}</b><br>Ringweg {i}, 50667 Köln<br><br>"_s, nameAddressPhone, Expected()},
        Form{"AHeadingAndWhatFollows", u"<div>%1</div>"_s,
             u"<h5>Haus {c}</h5><p>Ringweg {i}, 50667 Köln</p><p>Telefon 0221 55512{i}</p><hr>"_s,
             u"<h5>Haus {c}</h5><p>Ringweg {i}, 50667 Köln</p><hr>"_s, nameAddressPhone, Expected()},
        Form{"RowsThatTheNameTellsApart",
             u"<table>%1</table>"_s,
             u"<tr><td><font><b>Haus {c}</b></font></td></tr><tr><td><font>Ringweg {i}, 50667 Köln<br>Telefon. 0221 "
             "55512{i}</font></td></tr>"_s,
             {},
             nameAddressPhone,
             Expected()},
        Form{"CardsInATable",
             u"<table><tr>%1</tr></table>"_s,
             u"<td><b>Haus {c}</b><br>Ringweg {i}, 50667 Köln<br>Tel: 0221 55512{i}</td>"_s,
             {},
             nameAddressPhone,
             Expected()},
        Form{"AWebsiteBehindACounter",
             u"<div>%1</div>"_s,
             u"<div class=e><h3>Haus {c}</h3><p>Ringweg {i}, 50667 Köln</p><p>0221 55512{i}</p><a "
             "href='/out?url=https%3A%2F%2Fwww.h{i}.example.de'>Webseite</a></div>"_s,
             {},
             With(Field::Website, u"https://www.h2.example.de"_s),
             Expected(u"https://www.h4.example.de"_s)},
        Form{"MoreAtTheEnd",
             u"<div>%1</div>"_s,
             u"<div class=e><h3>Haus {c}</h3><p>Ringweg {i}, 50667 Köln</p><p><a href='tel:022155512{i}'>0221 "
             "55512{i}</a> <a href='/b/{i}'>Mehr</a></p></div>"_s,
             {},
             nameAddressPhone,
             Expected({}, {}, u"https://www.dir.example.de/b/4"_s)}),
    [](const auto& info) { return std::string(info.param.Name); });

TEST(LearnLinesReading, SeveralNumbersOfACellArePartedAsInTheList) {
    const PageTree page(u"<table><tr class=r><td class=n>A</td><td class=t>0221 555121<br>0221 555122</td></tr>"
                        "<tr class=r><td class=n>B</td><td class=t>0221 555123 (Büro)</td></tr></table>"_s);
    Recipe recipe;
    recipe.Records = u"tr.r"_s;
    recipe.Fields = {{.Column = Field::BusinessName, .Selector = u".n"_s},
                     {.Column = Field::Phone, .Selector = u".t"_s}};
    const RecipeReading reading = RecipeReader(recipe).Read(page, url);
    ASSERT_EQ(reading.Records.size(), 2U);
    EXPECT_EQ(reading.Records[0].Fields.Phone.toStdString(), "0221 555121;0221 555122");
    EXPECT_EQ(reading.Records[1].Fields.Phone.toStdString(), "0221 555123 (Büro)");
}

} // namespace
} // namespace Brindle
