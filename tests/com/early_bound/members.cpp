// The interfaces as the interface compiler declares them, and their members one by one.
#include <initguid.h>
#include <oaidl.h>

#include "Orv2_Geo_h.h"
#include "tests/com/early_bound/bound_call.h"

namespace orv2_geo::early_bound {

std::vector<BoundMember> all_members() {
#define MEMBER(interface_, position, name) \
  bind_member<&interface_::name>(#interface_, position, #name),
  return {
#include "early_bound_members.inc"
  };
#undef MEMBER
}

std::vector<ClassIdentity> all_classes() {
#define CLASS(name) \
  { #name, CLSID_##name, IID__##name }
  return {CLASS(cgeo_Algorismos), CLASS(cgeo_FuncDeriv), CLASS(cgeo_Terreno), CLASS(cgeo_api),
          CLASS(cgeo_Ordena),     CLASS(cgeo_Geometria), CLASS(cgeo_Matrices)};
#undef CLASS
}

}  // namespace orv2_geo::early_bound
