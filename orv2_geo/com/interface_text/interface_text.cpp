// Writes what component hosts are told of the library, from the tables of its classes:
//
//   interface_text idl       the interfaces, for the interface compiler
//   interface_text members   a line a member, for programs that go through all of them
//   interface_text manifest  the classes, for hosts that use the library unregistered
//
// It runs on the machine that builds, and needs nothing of the library but its tables.
#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "orv2_geo/com/identifiers.h"
#include "orv2_geo/library/class_tables.h"

using namespace orv2_geo;
using namespace orv2_geo::com;

namespace {

struct Member {
  std::string_view name;
  MemberKind kind;
  Type result;
  std::vector<ParameterDescription> parameters;
};

struct Class {
  std::string_view name;
  std::string_view registered_name;
  ClassIdentifiers identifiers;
  std::vector<Member> members;
};

// The reader of the tables: types and names, without a way to call.
struct ToldMember {
  template <auto member, Parameter... names>
  static Member method(std::string_view name) {
    using S = description::SignatureOf<member>;
    const auto& parameters = description::parameters_of<member, names...>;
    return {name,
            MemberKind::method,
            interface_type<typename S::Result>,
            {parameters.begin(), parameters.end()}};
  }
  template <auto variable>
  static Member property_read(std::string_view name) {
    return {name, MemberKind::property_read, type_of_property<variable>, {}};
  }
  template <auto variable>
  static Member property_write(std::string_view name) {
    return {name, MemberKind::property_write, Type::none, {{"value", type_of_property<variable>}}};
  }

 private:
  template <auto variable>
  static constexpr Type type_of_property =
      interface_type<typename description::Property<variable>::T>;
};

template <class Table>
Class told(const ClassIdentifiers& identifiers) {
  const auto members = Table::template lines<ToldMember>();
  return {unqualified(Table::Class::registered_name),
          Table::Class::registered_name,
          identifiers,
          {members.begin(), members.end()}};
}

template <class... Tables>
std::vector<Class> all_classes(std::type_identity<std::tuple<Tables...>>) {
  std::size_t i = 0;
  return {told<Tables>(class_identifiers[i++])...};
}

std::string_view type_name(Type type) {
  switch (type) {
    case Type::i16: return "short";
    case Type::i32: return "long";
    case Type::f32: return "float";
    case Type::f64: return "double";
    case Type::boolean: return "VARIANT_BOOL";
    case Type::text: return "BSTR";
    case Type::object: return "IDispatch*";
    case Type::variant: return "VARIANT";
    case Type::double_array: return "SAFEARRAY(double)";
    case Type::single_array: return "SAFEARRAY(float)";
    case Type::long_array: return "SAFEARRAY(long)";
    case Type::short_array: return "SAFEARRAY(short)";
    case Type::string_array: return "SAFEARRAY(BSTR)";
    default: return "void";
  }
}

std::string parameter_text(const ParameterDescription& parameter) {
  std::string text = parameter.by_reference ? "[in, out" : "[in";
  if (parameter.optional) {
    text += ", optional DEFAULT(" + std::to_string(parameter.default_value) + ")";
  }
  return text.append("] ")
      .append(type_name(parameter.type))
      .append(parameter.by_reference ? "* " : " ")
      .append(parameter.name);
}

std::string member_text(const Member& member, std::int32_t number) {
  std::string text = "      [id(" + std::to_string(number) + ")";
  if (member.kind == MemberKind::property_read) text += ", propget";
  if (member.kind == MemberKind::property_write) text += ", propput";
  text.append("] HRESULT ").append(member.name).append("(");
  const char* separator = "";
  const auto put = [&](const std::string& one) {
    text.append(separator).append(one);
    separator = ", ";
  };
  for (const ParameterDescription& parameter : member.parameters) put(parameter_text(parameter));
  if (member.result != Type::none) {
    put(std::string("[out, retval] ").append(type_name(member.result)).append("* result_"));
  }
  return text + ");\n";
}

std::string interface_text(const Class& one) {
  std::string text = "    [odl, dual, oleautomation, nonextensible, uuid(" +
                     spelled(one.identifiers.of_interface) + ")]\n    interface _";
  text.append(one.name).append(" : IDispatch {\n");
  std::int32_t number = first_dispatch_number;
  for (const Member& member : one.members) {
    const bool shared = member.kind == MemberKind::property_write;
    text += member_text(member, shared ? number - 1 : number);
    ++number;
  }
  return text + "    };\n\n";
}

std::string class_text(const Class& one) {
  std::string text = "    [uuid(" + spelled(one.identifiers.of_class) + ")]\n    coclass ";
  return text.append(one.name)
      .append(" {\n      [default] interface _")
      .append(one.name)
      .append(";\n    };\n\n");
}

void write_interfaces(const std::vector<Class>& classes) {
  std::printf(
      "// Made by interface_text from the tables of the classes.\n"
      "// A pointer of C++ has no number as its default.\n"
      "#ifdef FOR_A_HEADER\n#define DEFAULT(value)\n#else\n"
      "#define DEFAULT(value) , defaultvalue(value)\n#endif\n\n"
      "import \"oaidl.idl\";\nimport \"ocidl.idl\";\n\n"
      "[uuid(%s), version(%d.%d), lcid(%d), helpstring(\"%s\")]\nlibrary Orv2_Geo {\n"
      "    importlib(\"stdole2.tlb\");\n\n",
      spelled(library_identifier).c_str(), library_major, library_minor, library_locale,
      library_help);
  for (const Class& one : classes) std::printf("%s", interface_text(one).c_str());
  for (const Class& one : classes) std::printf("%s", class_text(one).c_str());
  std::printf("};\n");
}

void write_members(const std::vector<Class>& classes) {
  for (const Class& one : classes) {
    for (std::size_t i = 0; i < one.members.size(); ++i) {
      const Member& member = one.members[i];
      std::string name(member.name);
      if (member.kind == MemberKind::property_read) name.insert(0, "get_");
      if (member.kind == MemberKind::property_write) name.insert(0, "put_");
      std::printf("MEMBER(_%s, %zu, %s)\n", std::string(one.name).c_str(), i, name.c_str());
    }
  }
}

void write_manifest(const std::vector<Class>& classes) {
  const std::string library = spelled(library_identifier);
  std::printf(
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      "  <assemblyIdentity type=\"win32\" name=\"Orv2_Geo\" version=\"1.0.0.166\"/>\n"
      "  <file name=\"Orv2_Geo.dll\">\n");
  for (const Class& one : classes) {
    std::printf(
        "    <comClass clsid=\"{%s}\" threadingModel=\"Apartment\" tlbid=\"{%s}\" "
        "progid=\"%s\"/>\n",
        spelled(one.identifiers.of_class).c_str(), library.c_str(),
        std::string(one.registered_name).c_str());
  }
  std::printf("    <typelib tlbid=\"{%s}\" version=\"%d.%d\" helpdir=\"\"/>\n  </file>\n",
              library.c_str(), library_major, library_minor);
  for (const Class& one : classes) {
    // The system's own proxy for interfaces that a type library tells of.
    std::printf(
        "  <comInterfaceExternalProxyStub name=\"_%s\" iid=\"{%s}\" tlbid=\"{%s}\" "
        "proxyStubClsid32=\"{00020424-0000-0000-C000-000000000046}\"/>\n",
        std::string(one.name).c_str(), spelled(one.identifiers.of_interface).c_str(),
        library.c_str());
  }
  std::printf("</assembly>\n");
}

}  // namespace

int main(int count, char** words) {
  const std::string_view what = count == 2 ? words[1] : "";
  const std::vector<Class> classes = all_classes(std::type_identity<ClassTables>());
  if (what == "idl") return write_interfaces(classes), 0;
  if (what == "members") return write_members(classes), 0;
  if (what == "manifest") return write_manifest(classes), 0;
  std::fputs("usage: interface_text idl|members|manifest\n", stderr);
  return 2;
}
