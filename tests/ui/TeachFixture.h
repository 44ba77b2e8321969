#pragma once

#include "WindowFixture.h"
#include "core/QtMessageLoop.h"

#include <QWebEngineView>

#include <gtest/gtest.h>

namespace Brindle::Test {

inline constexpr int PointNext = FieldCount; // what can be said of an element beside the fields
inline constexpr int PointDetails = FieldCount + 1;

/// A window with the real Chromium engine on the modern demo directories, and a person who points at what it shows.
class TeachFixture : public testing::Test {
protected:
    Demo::DemoServer Server;
    QtMessageLoop Loop;
    std::unique_ptr<WindowRun> Run;

    /// Starts the demo; the site of that code.
    Demo::ModernSite StartSite(QStringView code);
    /// Opens the window on a page, with any website chosen.
    void Open(const QString& start);
    /// Presses Teach and waits for the lights.
    void Teach();
    void SaveAs(const QString& name);
    bool Harvest();

    QString Bar() const { return Run->Control<AnyPageBar>(u"AnyPageBar")->Said(); }
    bool BarSays(const QString& what, int seconds = 30);
    TeachingDesk& Desk() { return Run->Window->Lessons(); }
    Teaching& Lesson() { return Desk().Lesson(); }
    const TeachSession& Session() { return *Lesson().Session(); }
    PageOverlay& Overlay() const { return *Run->Control<PageOverlay>(u"PageOverlay"); }
    bool Idle() const { return !Run->Window->Driver().Running() && !Run->Window->State().Parsing; }

    /// What a script of the page's own gets.
    QVariant InPage(const QString& script);
    /// Where the page shows a text, or the link with an address, in the view's coordinates; the first place that has
    /// it, scrolled into sight. Not valid when it is nowhere.
    QPointF PlaceOf(const QString& textOrLink);
    /// Clicks the page there and says what it is: a field, 14 the next page, 15 the business's own page. False when
    /// nobody asked what it is.
    bool PointAt(const QString& textOrLink, int what);
    bool PointAt(const QString& text, Field field) { return PointAt(text, static_cast<int>(field)); }
    /// The mark of a field that is in sight; empty when there is none.
    QRectF MarkOf(const QString& caption) const;
};

} // namespace Brindle::Test
