#include "tests/platform/rsatestkeys.h"

#include "platform/openssl_rsa.h"
#include "platform/status.h"

#include <gtest/gtest.h>

#include <string>

RsaPair generateRsaPair(OpcUa_UInt32 bits)
{
    RsaPair pair;
    OpcUa_Key publicKey = {0, {0, nullptr}};
    OpcUa_Key privateKey = {0, {0, nullptr}};
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(bits, &publicKey, &privateKey), OpcUa_Good);
    pair.publicDer.resize(static_cast<std::size_t>(publicKey.Key.Length));
    pair.privateDer.resize(static_cast<std::size_t>(privateKey.Key.Length));
    publicKey = pair.publicKey();
    privateKey = pair.privateKey();
    EXPECT_EQ(OpcUa_P_OpenSSL_RSA_GenerateKeys(bits, &publicKey, &privateKey), OpcUa_Good);
    cutTo(pair.publicDer, publicKey.Key.Length);
    cutTo(pair.privateDer, privateKey.Key.Length);
    return pair;
}

RsaPair makeRsaPairByProgram(unsigned bits)
{
    const TestFolder folder;
    EXPECT_TRUE(folder.openssl("genrsa -traditional -out key.pem " + std::to_string(bits)));
    EXPECT_TRUE(folder.openssl("rsa -in key.pem -traditional -outform DER -out private.der"));
    EXPECT_TRUE(folder.openssl("rsa -in key.pem -RSAPublicKey_out -outform DER -out public.der"));
    return {folder.read("public.der"), folder.read("private.der")};
}
