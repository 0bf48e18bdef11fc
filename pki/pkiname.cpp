#include "pki/pkiname.h"

bool PkiName_Add(X509_NAME* pName, const char* shortName, const UaString& text) noexcept
{
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.toUtf8());
    return X509_NAME_add_entry_by_txt(pName, shortName, MBSTRING_UTF8, bytes, text.length(), -1,
                                      0) == 1;
}

PkiHandle<X509_NAME> PkiName_Build(const UaPkiIdentity& identity) noexcept
{
    PkiHandle<X509_NAME> name(X509_NAME_new());
    for (const PkiNameField& row : PkiName_Fields) {
        const UaString& text = identity.*row.field;
        if (name == nullptr || (!text.isEmpty() && !PkiName_Add(name.get(), row.shortName, text))) {
            return nullptr;
        }
    }
    return name;
}
