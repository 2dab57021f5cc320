#include "orv2_geo/com/failures.h"

#include "orv2_geo/com/module.h"
#include "orv2_geo/frame/text.h"

namespace orv2_geo::com {

namespace {

constexpr std::int32_t numbered = static_cast<std::int32_t>(0x800A0000);
constexpr std::int32_t number_mask = 0xffff;

// The statuses of the dispatch service that stand for a failure of the catalogue.
struct Counterpart {
  HRESULT status;
  std::int32_t number;
};
constexpr Counterpart counterparts[] = {
    {DISP_E_MEMBERNOTFOUND, failure::no_such_member},
    {DISP_E_UNKNOWNNAME, failure::no_such_member},
    {DISP_E_TYPEMISMATCH, failure::type_mismatch},
    {DISP_E_OVERFLOW, failure::overflow},
    {DISP_E_BADINDEX, failure::subscript_out_of_range},
    {DISP_E_ARRAYISLOCKED, failure::array_locked},
    {DISP_E_DIVBYZERO, failure::division_by_zero},
    {DISP_E_PARAMNOTOPTIONAL, failure::argument_not_optional},
    {DISP_E_BADPARAMCOUNT, failure::wrong_argument_count},
    {E_OUTOFMEMORY, failure::out_of_memory},
};

std::int32_t number_of(HRESULT status) noexcept {
  if ((status & ~number_mask) == numbered) return status & number_mask;
  for (const Counterpart& one : counterparts) {
    if (one.status == status) return one.number;
  }
  return status;
}

// A copy as the system's text; none where there is no memory for it.
BSTR system_text(std::string_view utf8) noexcept {
  try {
    const Text text = Text::from_utf8(utf8);
    return SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()),
                             static_cast<UINT>(text.size()));
  } catch (...) {
    return nullptr;
  }
}

std::string utf8_of(BSTR text) {
  const auto* const units = reinterpret_cast<const char16_t*>(text);
  return units == nullptr ? std::string()
                          : Text(std::u16string_view(units, SysStringLen(text))).to_utf8();
}

void free_texts(EXCEPINFO& raised) noexcept {
  SysFreeString(raised.bstrSource);
  SysFreeString(raised.bstrDescription);
  SysFreeString(raised.bstrHelpFile);
}

// A text of the system's that is freed with its scope.
class SystemText {
 public:
  explicit SystemText(std::string_view utf8) noexcept : text_(system_text(utf8)) {}
  SystemText(const SystemText&) = delete;
  SystemText& operator=(const SystemText&) = delete;
  ~SystemText() { SysFreeString(text_); }
  BSTR get() const noexcept { return text_; }

 private:
  BSTR text_;
};

}  // namespace

HRESULT status_of(const RunFailure& failure) noexcept {
  const std::int32_t number = failure.number();
  if (number < 0) return number;
  const bool fits = number != 0 && number <= number_mask;
  return numbered | (fits ? number : failure::host_object_failed);
}

HRESULT told(const RunFailure& failure) noexcept {
  Reference<ICreateErrorInfo> made;
  if (SUCCEEDED(CreateErrorInfo(made.place()))) {
    made->SetDescription(SystemText(failure.description()).get());
    made->SetSource(SystemText(failure.source()).get());
    Reference<IErrorInfo> info;
    if (SUCCEEDED(made->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(info.place())))) {
      SetErrorInfo(0, info.get());
    }
  }
  return status_of(failure);
}

HRESULT told_in(EXCEPINFO* place, const RunFailure& failure) noexcept {
  if (place == nullptr) return told(failure);
  *place = EXCEPINFO{};
  place->scode = status_of(failure);
  place->bstrDescription = system_text(failure.description());
  place->bstrSource = system_text(failure.source());
  return DISP_E_EXCEPTION;
}

RunFailure failure_of(HRESULT status, EXCEPINFO& raised) noexcept {
  if (status != DISP_E_EXCEPTION) {
    const std::int32_t number = number_of(status);
    const bool listed = !failure::description_of(number).empty();
    if (listed) return RunFailure(number);
    return RunFailure(number, failure::description_of(failure::host_object_failed), "");
  }
  if (raised.pfnDeferredFillIn != nullptr) raised.pfnDeferredFillIn(&raised);
  std::int32_t number = raised.wCode != 0 ? raised.wCode : number_of(raised.scode);
  if (number == 0) number = failure::host_object_failed;
  RunFailure failure(number);
  try {
    failure = RunFailure(number, utf8_of(raised.bstrDescription), utf8_of(raised.bstrSource));
  } catch (...) {  // no memory for its words
  }
  free_texts(raised);
  return failure;
}

}  // namespace orv2_geo::com
