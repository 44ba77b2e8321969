#pragma once

#include "browser/ie/ComObject.h"
#include "browser/ie/ComPointer.h"

#include <exdisp.h>

namespace Brindle {

/// Who wants to hear of what happens in a web browser control. The control waits for the end of every call.
class IeListener {
public:
    virtual ~IeListener() = default;

    /// `wholePage` in these: it is about the page that the control shows, not about a frame within it.
    virtual void NavigationBegins(const QString& address, bool wholePage) = 0;
    /// The new document is there; its contents come in.
    virtual void NavigationShows(const QString& address, bool wholePage) = 0;
    virtual void DocumentLoaded(const QString& address, bool wholePage) = 0;
    /// `status` is what a server answered, or an error of the loader (negative).
    virtual void NavigationFails(const QString& address, qint32 status, bool wholePage) = 0;
    /// An address leads to a file that is no page; it is not stored.
    virtual void FileRefused() = 0;
    /// A page has asked for a window of its own, which was refused it; `byUser`: the user has clicked for it.
    virtual void WindowWanted(const QString& address, bool byUser) = 0;
    virtual void Progress(qint64 progress, qint64 maximum) = 0;
};

/// Receives the events of a web browser control (DWebBrowserEvents2).
class IeEvents final : public ComObject<DWebBrowserEvents2> {
public:
    /// The listener must live until `Disconnect`, or as long as the sink.
    explicit IeEvents(IeListener& listener) : listener_(&listener) {}

    /// False when the control has no such events.
    bool Connect(IUnknown& control);
    void Disconnect();

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) override;
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                                     UINT*) override;

protected:
    bool FindMore(REFIID wanted, void** found) override;

private:
    class Arguments;

    bool IsWholePage(const Arguments& arguments) const;

    IeListener* listener_;
    ComPointer<IUnknown> control_; // while connected; told apart from the browsers of frames by its identity
    ComPointer<IConnectionPoint> point_;
    DWORD cookie_ = 0;
};

} // namespace Brindle
