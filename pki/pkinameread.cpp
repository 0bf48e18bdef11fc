#include "pki/pkinameread.h"

#include "pki/opensslhandles.h"
#include "pki/pkiasn1.h"

UaString PkiName_ReadField(const X509_NAME* pName, int nid) noexcept
{
    const int position = X509_NAME_get_index_by_NID(pName, nid, -1);
    const X509_NAME_ENTRY* const entry =
        position >= 0 ? X509_NAME_get_entry(pName, position) : nullptr;
    return PkiText_Read(entry != nullptr ? X509_NAME_ENTRY_get_data(entry) : nullptr);
}

UaPkiIdentity PkiName_Read(const X509_NAME* pName) noexcept
{
    return {.organization = PkiName_ReadField(pName, NID_organizationName),
            .organizationUnit = PkiName_ReadField(pName, NID_organizationalUnitName),
            .locality = PkiName_ReadField(pName, NID_localityName),
            .state = PkiName_ReadField(pName, NID_stateOrProvinceName),
            .country = PkiName_ReadField(pName, NID_countryName),
            .commonName = PkiName_ReadField(pName, NID_commonName),
            .domainComponent = PkiName_ReadField(pName, NID_domainComponent)};
}
