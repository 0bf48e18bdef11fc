#!/bin/sh
# Makes the samples of this folder anew: certificates, lists, requests and keys, small and of many
# kinds. Their keys protect nothing.
set -e
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cat > "$work/config" <<'END'
[req]
distinguished_name = name
[name]
[application]
subjectAltName = URI:urn:host:application,DNS:host,IP:192.168.0.1,IP:2001:db8::1,email:a@example.org,RID:1.2.3.4,dirName:name_in_names,otherName:1.2.3.4;UTF8:other
basicConstraints = critical,CA:FALSE
keyUsage = critical,digitalSignature,keyEncipherment
extendedKeyUsage = serverAuth,clientAuth
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid:always,issuer:always
nsComment = comment
certificatePolicies = 1.2.3.4,@policy
crlDistributionPoints = URI:http://example.org/list.crl
authorityInfoAccess = OCSP;URI:http://example.org/
[policy]
policyIdentifier = 1.3.5.8
CPS.1 = http://example.org/
[name_in_names]
CN = inner
[authority]
basicConstraints = critical,CA:TRUE,pathlen:1
keyUsage = critical,keyCertSign,cRLSign
nameConstraints = permitted;DNS:example.org,excluded;IP:10.0.0.0/255.0.0.0
[ca]
default_ca = list
[list]
database = INDEX
default_md = sha256
default_crl_days = 30
crlnumber = NUMBER
crl_extensions = list_extensions
[list_extensions]
authorityKeyIdentifier = keyid:always,issuer:always
issuingDistributionPoint = critical,@point
[point]
fullname = URI:http://example.org/list.crl
END
sed -i "s|INDEX|$work/index|; s|NUMBER|$work/number|" "$work/config"
{
    printf 'R\t301231235959Z\t240101000000Z,keyCompromise\t01\tunknown\t/CN=a\n'
    printf 'R\t301231235959Z\t240101000000Z,CAkeyTime,20231231235959Z\t7F001122334455\tunknown\t/CN=b\n'
    printf 'R\t301231235959Z\t240101000000Z,holdInstruction,1.2.840.10040.2.1\t03\tunknown\t/CN=c\n'
} > "$work/index"
echo 1234 > "$work/number"
subject=/DC=example/C=DE/ST=State/L=Town/O=Org/OU=Unit/CN=Application

openssl genrsa -out "$work/rsa" 1024
openssl ecparam -name prime256v1 -genkey -noout -out "$work/ec"
openssl genpkey -algorithm ED25519 -out "$work/edwards"

certificate()
{
    openssl req -x509 -utf8 -config "$work/config" -key "$work/$1" -subj "$subject" -days 3650 \
        -extensions "$2" -outform "$3" -out "$4"
}
certificate rsa application DER certificate_application.der
certificate rsa application PEM certificate_application.pem
certificate ec authority DER certificate_authority_ec.der
certificate edwards application DER certificate_edwards.der

openssl req -x509 -config "$work/config" -key "$work/rsa" -subj /O=Org -extensions authority \
    -out "$work/authority"
list()
{
    openssl ca -config "$work/config" -gencrl -keyfile "$work/rsa" -cert "$work/authority" \
        -out "$work/list"
    openssl crl -in "$work/list" -outform "$1" -out "$2"
}
list DER list_entries.der
list PEM list_entries.pem
: > "$work/index"
list DER list_empty.der

request()
{
    openssl req -new -utf8 -config "$work/config" -key "$work/$1" -subj "$subject" \
        -reqexts application_request -outform DER -out "$2"
}
sed '/authorityKeyIdentifier/d; s/\[application\]/[application_request]/' "$work/config" \
    > "$work/request"
mv "$work/request" "$work/config"
request rsa request_rsa.der
request ec request_ec.der

openssl rsa -in "$work/rsa" -traditional -outform DER -out key_rsa.der
openssl rsa -in "$work/rsa" -traditional -out key_rsa.pem
openssl rsa -in "$work/rsa" -traditional -aes256 -passout pass:secret -out key_rsa_encrypted.pem
openssl pkcs8 -topk8 -in "$work/rsa" -nocrypt -outform DER -out key_pkcs8.der
openssl pkcs8 -topk8 -in "$work/rsa" -nocrypt -out key_pkcs8.pem
openssl pkcs8 -topk8 -in "$work/rsa" -v2 aes256 -iter 1 -passout pass:secret \
    -out key_pkcs8_encrypted.pem
openssl ec -in "$work/ec" -outform DER -out key_ec.der
openssl ec -in "$work/ec" -out key_ec.pem
openssl rsa -in "$work/rsa" -pubout -outform DER -out public_rsa.der
openssl ec -in "$work/ec" -pubout -outform DER -out public_ec.der
