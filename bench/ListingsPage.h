#pragma once

#include <QString>

namespace Brindle::Test {

using namespace Qt::StringLiterals;

/// A listing of some 1,900 characters: the fields among as much other markup as directories put around them.
inline QString Listing(int number, bool withEmail) {
    const QString id = QString::number(number);
    return u"<DIV class=listingDetail><DIV class=\"listingMarker mapPin\"><A title=\"Show on the map\" href=\"/map/"_s +
           id +
           u"\"><IMG height=24 alt=\"\" src=\"/images/pin_blue.png\" width=18></A></DIV>\n"
           u"<H3 class=listingTitleLine><A title=\"Finch &amp; Co\" href=\"/bus/Ontario/Guelph/Finch%2C-Co/"_s +
           id + u".html?what=Plumbers&amp;where=Guelph\"><SPAN class=listingTitle>Finch &amp; Co Plumbing " + id +
           u"</SPAN></A></H3>\n<DIV class=phoneNumber>519 555-0100</DIV>\n<DIV class=address>" + id +
           u" Elm St, Guelph, ON N1H 3A1</DIV>\n"
           u"<UL class=\"listingLinks inline\"><LI><A class=urlLink title=\"Visit the website\" "
           u"href=\"/gourl/http%3A%2F%2Fwww.finch"_s +
           id + u".test\">Website</A></LI>" +
           (withEmail
                ? u"<LI><A class=emailLink href=\"mailto:info%40finch.test?subject=Your listing\">E-mail</A></LI>"_s
                : u"<LI><A class=smsLink href=\"/sms\">Send to a phone, free of charge for you</A></LI>"_s) +
           QString(
               u"</UL>\n<P class=description>Family business since 1962. Repairs, installation and maintenance of "
               u"pipes, "
               u"heaters, pumps and drains; emergency service day and night, in all of Wellington County.</P>\n"
               u"<TABLE class=hours cellSpacing=0 cellPadding=2><TBODY><TR><TD>Mon</TD><TD>8:00 - 18:00</TD></TR>"
               u"<TR><TD>Tue</TD><TD>8:00 - 18:00</TD></TR><TR><TD>Wed</TD><TD>8:00 - 18:00</TD></TR>"
               u"<TR><TD>Thu</TD><TD>8:00 - 18:00</TD></TR><TR><TD>Fri</TD><TD>8:00 - 16:00</TD></TR></TBODY></TABLE>\n"
               u"<DIV class=\"toolbar clearfix\"><SPAN class=rating title=\"4 of 5\"><I class=star></I><I "
               u"class=star></I>"
               u"<I class=star></I><I class=star></I><I class=empty></I></SPAN> <A href=\"/reviews\">12 reviews</A> | "
               u"<A href=\"/add-to-my-list\">Add to my list</A> | <A href=\"/directions\">Directions</A> | "
               u"<A href=\"/print\" target=_blank>Print</A></DIV>\n<UL class=tags><LI><A href=\"/t/1\">Pumps</A></LI>"
               u"<LI><A href=\"/t/2\">Drains</A></LI><LI><A href=\"/t/3\">Heaters</A></LI><LI><A href=\"/t/4\">Pipes"
               u"</A></LI><LI><A href=\"/t/5\">Emergency</A></LI></UL></DIV>\n"_s);
}

/// A Yellow Pages Canada result page of this many listings, as an old engine writes it.
inline QString ListingsPage(int listings, bool withEmail) {
    QString page = u"<BODY class=results><DIV class=\"ypgResultsTop\"><FORM action=/search method=get><INPUT "
                   "id=ypgHeaderWhat maxLength=150 value=Plumbers name=what></FORM></DIV>\n"_s;
    for (int i = 0; i < listings; ++i)
        page += Listing(i, withEmail);
    return page + u"<DIV class=ypgFooterLegal>All rights reserved</DIV></BODY>";
}

} // namespace Brindle::Test
