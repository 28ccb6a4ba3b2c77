// Compiled into each executable that links the library: a host that uses it from QML alone would
// otherwise have it dropped by the linker, and its QML types with it.

void qml_register_types_ZNTAds();

[[maybe_unused]] extern void (*const znt_qml_types)();
void (*const znt_qml_types)() = &qml_register_types_ZNTAds;
