#include "browser/webengine/WebEnginePointing.h"

#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>

namespace Brindle {

using namespace Qt::StringLiterals;

namespace {

// The marks go into a copy that belongs to a document of its own, in which nothing runs and nothing is loaded.
constexpr auto snapshot = uR"((() => {
    const root = document.documentElement;
    if (window.brindleLeft || !root) return ['', ''];
    const html = root.outerHTML;
    if (html.length > 67108864) return ['', ''];
    const copy = document.implementation.createHTMLDocument('').importNode(root, true);
    const elements = [root, ...root.querySelectorAll('*')];
    [copy, ...copy.querySelectorAll('*')].forEach((element, i) => element.setAttribute('%1', i));
    window.brindleElements = elements;
    window.brindleNumbers = new Map(elements.map((element, i) => [element, i]));
    window.brindleChanged = false;
    if (window.brindleWatch) window.brindleWatch.disconnect();
    window.brindleWatch = new MutationObserver(() => { window.brindleChanged = true; });
    window.brindleWatch.observe(root, {childList: true, subtree: true, characterData: true});
    return [html, copy.outerHTML];
})())";

// What takes no room of its own is where its contents are. Whoever zooms with the wheel changes what the page takes for
// a pixel, which the engine's zoom factor does not know.
constexpr auto places = uR"(((groups, scale) => {
    const zoom = devicePixelRatio / scale;
    const known = window.brindleElements;
    if (!known) return [true, []];
    const placeOf = element => {
        let box = element.getBoundingClientRect();
        if (!box.width || !box.height) {
            const range = document.createRange();
            range.selectNodeContents(element);
            box = range.getBoundingClientRect();
        }
        return box;
    };
    const result = groups.map(group => {
        let left = Infinity, top = Infinity, right = -Infinity, bottom = -Infinity;
        for (const number of group) {
            const element = known[number];
            if (!element || !element.isConnected) continue;
            const box = placeOf(element);
            if (!box.width || !box.height) continue;
            left = Math.min(left, box.left); top = Math.min(top, box.top);
            right = Math.max(right, box.right); bottom = Math.max(bottom, box.bottom);
        }
        return right > left ? [left, top, right - left, bottom - top].map(length => length * zoom) : [0, 0, 0, 0];
    });
    return [window.brindleChanged === true, result];
})(%1, %2))";

// Pages lay empty links and veils over what they show; one that shows nothing is looked through.
constexpr auto elementAt = uR"(((x, y, scale) => {
    const zoom = devicePixelRatio / scale;
    const shows = each => each.textContent.trim() || each.matches('img,svg,canvas,video,input,button,select,iframe,area');
    const there = document.elementsFromPoint(x / zoom, y / zoom);
    let element = there.find(shows) || there[0];
    while (element && !(window.brindleNumbers && window.brindleNumbers.has(element))) element = element.parentElement;
    return element ? window.brindleNumbers.get(element) : -1;
})(%1, %2, %3))";

constexpr auto scrollTo = uR"((number => {
    const element = window.brindleElements && window.brindleElements[number];
    if (element && element.isConnected) element.scrollIntoView({block: 'center', inline: 'nearest'});
})(%1))";

} // namespace

WebEnginePointing::WebEnginePointing(QWebEnginePage& page, std::function<QVariant(const QString&)> evaluate)
    : page_(page), evaluate_(std::move(evaluate)) {}

PageSnapshot WebEnginePointing::TakeSnapshot() {
    const QVariantList texts = evaluate_(QString::fromUtf16(snapshot).arg(elementNumberAttribute)).toList();
    return {texts.value(0).toString(), texts.value(1).toString()};
}

void WebEnginePointing::AskPlaces(const std::vector<std::vector<int>>& groups,
                                  std::function<void(const ShownPlaces&)> answer) {
    QString list;
    for (const std::vector<int>& group : groups) {
        list += list.isEmpty() ? u"[" : u",[";
        for (size_t i = 0; i < group.size(); ++i)
            list += (i > 0 ? u"," : u"") + QString::number(group[i]);
        list += u']';
    }
    Ask(QString::fromUtf16(places).arg(u'[' + list + u']').arg(ScaleOfView()),
        [answer = std::move(answer)](const QVariant& value) {
            const QVariantList both = value.toList();
            if (both.size() != 2)
                return;
            ShownPlaces shown;
            shown.Changed = both[0].toBool();
            for (const QVariant& place : both[1].toList()) {
                const QVariantList box = place.toList();
                shown.Places.emplace_back(box.value(0).toDouble(), box.value(1).toDouble(), box.value(2).toDouble(),
                                          box.value(3).toDouble());
            }
            answer(shown);
        });
}

void WebEnginePointing::AskElementAt(QPointF place, std::function<void(int)> answer) {
    Ask(QString::fromUtf16(elementAt).arg(place.x()).arg(place.y()).arg(ScaleOfView()),
        [answer = std::move(answer)](const QVariant& number) {
            bool isNumber = false;
            const int element = number.toInt(&isNumber);
            answer(isNumber ? element : -1);
        });
}

// Device pixels to one of the view's.
double WebEnginePointing::ScaleOfView() const {
    const QWebEngineView* const view = QWebEngineView::forPage(&page_);
    return view ? view->devicePixelRatioF() : 1;
}

void WebEnginePointing::ScrollTo(int element) {
    Ask(QString::fromUtf16(scrollTo).arg(element), [](const QVariant&) {});
}

void WebEnginePointing::Ask(const QString& script, std::function<void(const QVariant&)> answer) {
    page_.runJavaScript(script, QWebEngineScript::ApplicationWorld,
                        [alive = std::weak_ptr(alive_), answer = std::move(answer)](const QVariant& value) {
                            if (!alive.expired())
                                answer(value);
                        });
}

} // namespace Brindle
