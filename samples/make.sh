#!/bin/sh
# Makes root.pem, certificate.pem and gost.pem anew. The private keys live in a scratch folder only. For the last one
# openssl needs its GOST engine (Debian: libengine-gost-openssl).
set -eu
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

cat > root.cnf <<'END'
[req]
prompt = no
string_mask = utf8only
utf8 = yes
distinguished_name = name
[name]
C = RU
ST = 77 г. Москва
L = Москва
O = ООО «Образец»
OU = Удостоверяющий центр
CN = Образец Корневой УЦ
[root]
basicConstraints = critical, CA:TRUE, pathlen:0
keyUsage = critical, keyCertSign, cRLSign
subjectKeyIdentifier = hash
END

cat > server.cnf <<'END'
[req]
prompt = no
string_mask = utf8only
utf8 = yes
distinguished_name = name
[name]
C = RU
ST = 78 г. Санкт-Петербург
L = Санкт-Петербург
O = АО «Пример», филиал
CN = www.example.ru
[server]
basicConstraints = critical, CA:FALSE
keyUsage = critical, digitalSignature
extendedKeyUsage = serverAuth, clientAuth
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid
subjectAltName = DNS:www.example.ru, DNS:example.ru
certificatePolicies = 2.23.140.1.2.2
crlDistributionPoints = URI:http://crl.example.ru/root.crl
authorityInfoAccess = OCSP;URI:http://ocsp.example.ru, caIssuers;URI:http://ca.example.ru/root.crt
END

cat > gost.cnf <<'END'
[req]
prompt = no
string_mask = utf8only
utf8 = yes
distinguished_name = name
[name]
C = RU
ST = 77 г. Москва
L = Москва
streetAddress = ул. Примерная, д. 1
O = ООО «Образец»
CN = Образец УЦ ГОСТ
INN = 007700000000
OGRN = 1027700000000
[gost]
basicConstraints = critical, CA:TRUE
keyUsage = critical, digitalSignature, keyCertSign, cRLSign
certificatePolicies = 1.2.643.100.113.1, 1.2.643.100.113.2
2.5.29.16 = ASN1:SEQUENCE:period
1.2.643.100.111 = ASN1:FORMAT:UTF8,UTF8String:СКЗИ «Образец» (версия 1.0)
1.2.643.100.112 = ASN1:SEQUENCE:tools
1.2.643.100.114 = ASN1:INTEGER:0
[period]
notBefore = IMPLICIT:0,GENERALIZEDTIME:20260101000000Z
notAfter = IMPLICIT:1,GENERALIZEDTIME:20270401000000Z
[tools]
1 = FORMAT:UTF8,UTF8String:СКЗИ «Образец» (версия 1.0)
2 = FORMAT:UTF8,UTF8String:ПАК «Образец УЦ» (версия 2.0)
3 = FORMAT:UTF8,UTF8String:Заключение № 1 от 01.01.2026
4 = FORMAT:UTF8,UTF8String:Заключение № 2 от 01.01.2026
END

# `openssl ca` is the command that takes both dates.
cat > ca.cnf <<'END'
[ca]
database = index.txt
serial = serial
new_certs_dir = .
default_md = sha256
policy = any
unique_subject = no
preserve = yes
[any]
countryName = supplied
stateOrProvinceName = optional
localityName = optional
organizationName = supplied
organizationalUnitName = optional
commonName = supplied
streetAddress = optional
INN = optional
OGRN = optional
END

issue() {
  openssl ca -batch -notext -utf8 -config ca.cnf -name ca -startdate 20260101000000Z -enddate 20560101000000Z "$@"
}
touch index.txt
openssl rand -hex 16 | sed 's/^./5/' > serial
openssl req -new -utf8 -newkey rsa:3072 -nodes -keyout root.key -config root.cnf -out root.csr
issue -selfsign -keyfile root.key -in root.csr -extfile root.cnf -extensions root -out root.pem
openssl req -new -utf8 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -keyout server.key -config server.cnf \
  -out server.csr
issue -keyfile root.key -cert root.pem -in server.csr -extfile server.cnf -extensions server -out certificate.pem
openssl req -new -engine gost -utf8 -newkey gost2012_256 -pkeyopt paramset:A -nodes -keyout gost.key -config gost.cnf \
  -out gost.csr
issue -engine gost -md md_gost12_256 -selfsign -keyfile gost.key -in gost.csr -extfile gost.cnf -extensions gost \
  -out gost.pem
openssl verify -CAfile root.pem certificate.pem
openssl verify -engine gost -CAfile gost.pem gost.pem
cp root.pem certificate.pem gost.pem "$here"
