// The base of the seven faces: identity, late binding, class information, error support and connection points.
//
// A face keeps its model object alive and is its only face as long as any host holds it. FinalFace supplies Facts() and
// Thunks(), one for each member of its interface; a class with events also supplies ForwardEvents.
#pragma once

#include <ocidl.h>
#include <olectl.h>

#include <array>
#include <span>

#include "automation/ConnectionPoint.h"
#include "automation/FromHost.h"
#include "automation/LateBound.h"
#include "automation/ModelAccess.h"
#include "automation/TypeLibrary.h"
#include "automation/faces/ToHost.h"

namespace kestrel {

template <class FinalFace, class Interface, class ModelClass>
class Face : public Interface,
             public ISupportErrorInfo,
             public IProvideClassInfo2,
             public IConnectionPointContainer,
             public ModelAccess {
  public:
    // The face that the model object has, or a new one; nothing for nothing.
    [[nodiscard]] static ComPtr<Interface> Of(const Ref<ModelClass>& model) {
        if (!model) return {};
        auto* face = static_cast<FinalFace*>(model->Face());
        return ComPtr<Interface>(face != nullptr ? face : new FinalFace(model));
    }

    // A new model object by its face; what a class factory calls.
    static HRESULT Create(REFIID riid, void** object) noexcept {
        return Guarded(&FinalFace::Facts(), [&] { Require(Of(Make<ModelClass>())->QueryInterface(riid, object)); });
    }

    explicit Face(Ref<ModelClass> model) noexcept : mvarModel(std::move(model)) {
        mvarModel->SetFace(static_cast<FinalFace*>(this));
    }
    // Subscribes the table to the events of the model object; none here.
    [[nodiscard]] static std::vector<Subscription> ForwardEvents(ModelClass&, ConnectionTable&) { return {}; }

    // A host refers to a face by its address.
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;

    // --- IUnknown ---

    STDMETHODIMP QueryInterface(REFIID riid, void** object) noexcept override {
        if (object == nullptr) return E_POINTER;
        *object = Find(riid);
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++mvarReferences; }
    STDMETHODIMP_(ULONG) Release() noexcept override {
        const ULONG left = --mvarReferences;
        if (left == 0) delete static_cast<FinalFace*>(this);
        return left;
    }

    // --- IDispatch ---

    STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
        return Fill(count, [&] { *count = 1; });
    }
    STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
        return Fill(info, [&] {
            if (index != 0) throw ComFailure{DISP_E_BADINDEX};
            *info = ComPtr<ITypeInfo>(&Table().Info()).Detach();
        });
    }
    STDMETHODIMP GetIDsOfNames(REFIID riid, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
        return LateBound(
            [&] { return riid == IID_NULL ? IdsOfNames(Table(), names, count, ids) : DISP_E_UNKNOWNINTERFACE; });
    }
    STDMETHODIMP Invoke(DISPID member, REFIID riid, LCID locale, WORD flags, DISPPARAMS* params, VARIANT* result,
                        EXCEPINFO* exception,
                        UINT* failedArgument) noexcept override { // NOLINT(readability-non-const-parameter): COM's
        return LateBound([&] {
            const LateCall call{member, locale, flags, params, result, exception, failedArgument};
            return riid == IID_NULL ? Call(Table(), static_cast<FinalFace*>(this), call) : DISP_E_UNKNOWNINTERFACE;
        });
    }

    // --- ISupportErrorInfo ---

    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID riid) noexcept override {
        return riid == FinalFace::Facts().iid ? S_OK : S_FALSE;
    }

    // --- IProvideClassInfo2 ---

    STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override {
        return Fill(info, [&] { *info = TypeInfoOf(FinalFace::Facts().clsid).Detach(); });
    }
    STDMETHODIMP GetGUID(DWORD kind, GUID* guid) noexcept override {
        return Fill(guid, [&] {
            if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) throw ComFailure{E_INVALIDARG};
            if (FinalFace::Facts().events == nullptr) throw ComFailure{E_NOINTERFACE};
            *guid = *FinalFace::Facts().events;
        });
    }

    // --- IConnectionPointContainer ---

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) noexcept override {
        return Fill(points, [&] { *points = EnumerateConnectionPoint(Point()).Detach(); });
    }
    STDMETHODIMP FindConnectionPoint(REFIID riid, IConnectionPoint** point) noexcept override {
        return Fill(point, [&] {
            const IID* const events = FinalFace::Facts().events;
            if (events == nullptr || riid != *events) throw ComFailure{CONNECT_E_NOCONNECTION};
            *point = Point().Detach();
        });
    }

    // --- ModelAccess ---

    Exposed* STDMETHODCALLTYPE Model(const ClassTag* tag) noexcept override {
        return tag == &TagOf<ModelClass> ? mvarModel.Get() : nullptr;
    }

  protected:
    virtual ~Face() { mvarModel->SetFace(nullptr); }

    [[nodiscard]] ModelClass& Model() const noexcept { return *mvarModel; }

    // The frames of a member. Each keeps the face, and with it the model object, until the call ends: a handler of an
    // event may release the host's last reference.

    template <class Body>
    HRESULT Do(Body&& body) noexcept {
        const ComPtr<FinalFace> self(static_cast<FinalFace*>(this));
        return Guarded(&FinalFace::Facts(), body);
    }
    // The out-pointer is checked and emptied before the body fills it.
    template <class Out, class Body>
    HRESULT Fill(Out* out, Body&& body) noexcept {
        return Do([&] {
            RequirePointer(out);
            *out = Out{};
            body();
        });
    }
    // The body's value goes to the out-pointer.
    template <class Out, class Body>
    HRESULT Get(Out* out, Body&& body) noexcept {
        return Fill(out, [&] { ToHost(body(), out); });
    }

  private:
    // The frame of a call by IDispatch, which has a result code of its own.
    template <class Body>
    HRESULT LateBound(Body&& body) noexcept {
        const ComPtr<FinalFace> self(static_cast<FinalFace*>(this));
        return GuardedLateBound(&FinalFace::Facts(), body);
    }

    // Never destroyed, as the type library that it refers to: see there.
    [[nodiscard]] static const DispatchTable& Table() {
        static const auto* const table = new DispatchTable(TypeInfoOf(FinalFace::Facts().iid), FinalFace::Thunks());
        return *table;
    }

    [[nodiscard]] void* Find(REFIID riid) noexcept {
        if (riid == IID_IUnknown || riid == IID_IDispatch || riid == FinalFace::Facts().iid)
            return static_cast<Interface*>(this);
        if (riid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
        if (riid == IID_IProvideClassInfo || riid == IID_IProvideClassInfo2)
            return static_cast<IProvideClassInfo2*>(this);
        if (riid == IID_IConnectionPointContainer && FinalFace::Facts().events != nullptr)
            return static_cast<IConnectionPointContainer*>(this);
        return riid == IID_ModelAccess ? static_cast<ModelAccess*>(this) : nullptr;
    }

    [[nodiscard]] ComPtr<IConnectionPoint> Point() {
        if (!mvarModel->Attachment()) mvarModel->SetAttachment(NewTable());
        const Ref<ConnectionTable> table(static_cast<ConnectionTable*>(mvarModel->Attachment().Get()));
        return ComPtr<IConnectionPoint>(new ConnectionPoint(*this, *FinalFace::Facts().events, table));
    }

    [[nodiscard]] Ref<ConnectionTable> NewTable() {
        // The table belongs to the model object and connects only while a face is there.
        ModelClass& model = *mvarModel;
        return Make<ConnectionTable>(*FinalFace::Facts().events, [&model](ConnectionTable& table) {
            return FinalFace::ForwardEvents(model, table);
        });
    }

    ULONG mvarReferences = 0;
    ModuleLock mvarModuleLock;
    Ref<ModelClass> mvarModel;
};

} // namespace kestrel
