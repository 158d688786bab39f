// Finds a method in the class table: the rules know no database.
#include <tavcc/registry/class_registry.h>
#include <iostream>

int main() {
  const tavcc::ClassDescription* const cls = tavcc::FindClass("cls_CX");
  const tavcc::Method* const method = tavcc::FindMethod(*cls, "auditbill");
  std::cout << tavcc::Classes().size() << " classes, " << method->name << " has "
            << method->parameters.size() << " arguments\n";
}
