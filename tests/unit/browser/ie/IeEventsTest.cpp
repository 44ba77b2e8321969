#include "browser/ie/IeEvents.h"

#include "PrintTo.h"
#include "ScriptedObject.h"

#include <QStringList>

#include <exdispid.h>
#include <gtest/gtest.h>
#include <memory>
#include <olectl.h>
#include <shobjidl.h>
#include <vector>

namespace Brindle {

using namespace Qt::StringLiterals;
namespace {

using Test::ScriptedObject;

// Writes down what it hears.
class Recorder : public IeListener {
public:
    QStringList Heard;

    void NavigationBegins(const QString& address, bool wholePage) override { Note(u"begins", address, wholePage); }
    void NavigationShows(const QString& address, bool wholePage) override { Note(u"shows", address, wholePage); }
    void DocumentLoaded(const QString& address, bool wholePage) override { Note(u"loaded", address, wholePage); }
    void NavigationFails(const QString& address, qint32 status, bool wholePage) override {
        Note(u"fails", address + u' ' + QString::number(status), wholePage);
    }
    void FileRefused() override { Heard += u"file refused"_s; }
    void WindowWanted(const QString& address, bool byUser) override {
        Heard += u"window wanted "_s + address + (byUser ? u" by user" : u" unasked");
    }
    void Progress(qint64 progress, qint64 maximum) override {
        Heard += u"progress %1 of %2"_s.arg(progress).arg(maximum);
    }

private:
    void Note(QStringView what, const QString& address, bool wholePage) {
        Heard += what.toString() + u' ' + address + (wholePage ? u" page" : u" frame");
    }
};

// A control that hands its events to one sink.
class ScriptedControl final : public ComObject<IConnectionPointContainer, IConnectionPoint> {
public:
    ComPointer<IDispatch> Sink;

    HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID events, IConnectionPoint** point) override {
        if (events != DIID_DWebBrowserEvents2)
            return CONNECT_E_NOCONNECTION;
        *point = this;
        AddRef();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetConnectionPointContainer(IConnectionPointContainer**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override {
        *cookie = 7;
        return sink->QueryInterface(DIID_DWebBrowserEvents2, Sink.OutVoid());
    }
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override {
        EXPECT_EQ(cookie, 7u);
        Sink.Reset();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections**) override { return E_NOTIMPL; }
};

// The arguments of an event, given in the order in which they are documented.
class EventArguments {
public:
    EventArguments& Object(IUnknown* object) {
        VARIANT& argument = Add(VT_DISPATCH);
        argument.punkVal = object;
        return *this;
    }
    EventArguments& Text(const QString& text) {
        texts_.push_back(std::make_unique<ComText>(text));
        Add(VT_BSTR).bstrVal = texts_.back()->Get();
        return *this;
    }
    // As the control hands most things over: a reference to another value.
    EventArguments& ByReference() {
        behind_.push_back(std::make_unique<VARIANT>(arguments_.back()));
        arguments_.back().vt = VT_BYREF | VT_VARIANT;
        arguments_.back().pvarVal = behind_.back().get();
        return *this;
    }
    EventArguments& Number(long number) {
        Add(VT_I4).lVal = number;
        return *this;
    }
    EventArguments& Bool(bool value) {
        Add(VT_BOOL).boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
        return *this;
    }
    EventArguments& Cancel(VARIANT_BOOL& cancel) {
        Add(VT_BYREF | VT_BOOL).pboolVal = &cancel;
        return *this;
    }

    HRESULT Fire(IDispatch& sink, DISPID id) const {
        std::vector<VARIANT> reversed(arguments_.rbegin(), arguments_.rend());
        DISPPARAMS params{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
        return sink.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr);
    }

private:
    VARIANT& Add(VARTYPE type) {
        VARIANT& added = arguments_.emplace_back();
        VariantInit(&added);
        added.vt = type;
        return added;
    }

    std::vector<VARIANT> arguments_;
    std::vector<std::unique_ptr<ComText>> texts_;
    std::vector<std::unique_ptr<VARIANT>> behind_;
};

class IeEventsTest : public testing::Test {
protected:
    IeEventsTest() { EXPECT_TRUE(Events->Connect(*Identity())); }
    ~IeEventsTest() override { Events->Disconnect(); }

    IUnknown* Identity() const { return static_cast<IConnectionPointContainer*>(Control.Get()); }
    void Fire(DISPID id, const EventArguments& arguments) { arguments.Fire(*Control->Sink.Get(), id); }

    Recorder Told;
    ComPointer<ScriptedControl> Control = ComPointer<ScriptedControl>::Adopt(new ScriptedControl);
    ComPointer<IeEvents> Events = ComPointer<IeEvents>::Adopt(new IeEvents(Told));
    const QString Address = u"http://a.example/\u00e9?b=1&c"_s;
};

TEST_F(IeEventsTest, TellsTheWholePageFromItsFrames) {
    const ComPointer<ScriptedObject> frame = ScriptedObject::Make();
    for (const DISPID id : {DISPID_BEFORENAVIGATE2, DISPID_NAVIGATECOMPLETE2, DISPID_DOCUMENTCOMPLETE}) {
        // By another of its interfaces it is the same control.
        Fire(id, EventArguments().Object(static_cast<IConnectionPoint*>(Control.Get())).Text(Address).ByReference());
        Fire(id, EventArguments().Object(frame.Get()).Text(Address));
    }
    EXPECT_EQ(Told.Heard, (QStringList{u"begins "_s + Address + u" page", u"begins "_s + Address + u" frame",
                                       u"shows "_s + Address + u" page", u"shows "_s + Address + u" frame",
                                       u"loaded "_s + Address + u" page", u"loaded "_s + Address + u" frame"}));
}

TEST_F(IeEventsTest, TellsOfFailuresAndProgress) {
    VARIANT_BOOL cancel = VARIANT_FALSE;
    const auto fail = [&](long status) {
        Fire(DISPID_NAVIGATEERROR, EventArguments()
                                       .Object(Identity())
                                       .Text(Address)
                                       .ByReference()
                                       .Text(u"frame"_s)
                                       .ByReference()
                                       .Number(status)
                                       .ByReference()
                                       .Cancel(cancel));
    };
    fail(404);
    fail(static_cast<long>(0x800C0005));
    Fire(DISPID_PROGRESSCHANGE, EventArguments().Number(2500).Number(10000));
    Fire(DISPID_PROGRESSCHANGE, EventArguments().Number(-1).Number(0));
    EXPECT_EQ(Told.Heard,
              (QStringList{u"fails "_s + Address + u" 404 page", u"fails "_s + Address + u" -2146697211 page",
                           u"progress 2500 of 10000"_s, u"progress -1 of 0"_s}));
    EXPECT_EQ(cancel, VARIANT_FALSE) << "the engine shows the user what is wrong";
}

TEST_F(IeEventsTest, RefusesWindowsAndFiles) {
    VARIANT_BOOL cancel = VARIANT_FALSE;
    const auto expect = [&](const char* name, DISPID id, const EventArguments& arguments, bool cancels,
                            const QStringList& heard) {
        SCOPED_TRACE(name);
        cancel = VARIANT_FALSE;
        Told.Heard.clear();
        Fire(id, arguments);
        EXPECT_EQ(cancel != VARIANT_FALSE, cancels);
        EXPECT_EQ(Told.Heard, heard);
    };
    const QString opener = u"http://from.example/"_s;
    for (const auto& [flags, by] :
         {std::pair<long, QString>{NWMF_FIRST | NWMF_USERINITED, u" by user"_s}, {NWMF_FIRST, u" unasked"_s}})
        expect("window", DISPID_NEWWINDOW3,
               EventArguments().Object(nullptr).Cancel(cancel).Number(flags).Text(opener).Text(Address), true,
               {u"window wanted "_s + Address + by});
    expect("window without an address", DISPID_NEWWINDOW2, EventArguments().Object(nullptr).Cancel(cancel), true, {});
    expect("closing", DISPID_WINDOWCLOSING, EventArguments().Bool(false).Cancel(cancel), true, {});
    expect("page", DISPID_FILEDOWNLOAD, EventArguments().Bool(true).Cancel(cancel), false, {});
    expect("file", DISPID_FILEDOWNLOAD, EventArguments().Bool(false).Cancel(cancel), true, {u"file refused"_s});
}

TEST_F(IeEventsTest, MissingArgumentsAndUnknownEventsDoNoHarm) {
    for (DISPID id = 100; id < 300; ++id) {
        Fire(id, EventArguments());
        Fire(id, EventArguments().Number(1));
        Fire(id, EventArguments().Text(Address).Text(Address).Text(Address).Text(Address).Text(Address));
    }
    for (const QString& heard : Told.Heard)
        EXPECT_FALSE(heard.endsWith(u" page")) << heard.toStdString();
    EXPECT_EQ(
        Control->Sink->Invoke(DISPID_PROGRESSCHANGE, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
        E_POINTER);
}

TEST_F(IeEventsTest, LetsGoOfTheControl) {
    Events->Disconnect();
    EXPECT_FALSE(Control->Sink);
    EXPECT_EQ(Control->AddRef(), 2u);
    Control->Release();
    EXPECT_FALSE(Events->Connect(*ScriptedObject::Make().Get())) << "it has no events";
}

} // namespace
} // namespace Brindle
