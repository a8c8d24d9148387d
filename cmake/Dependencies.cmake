# The libraries that script/bootstrap installs.
find_package(Threads REQUIRED)
find_package(ICU 63 REQUIRED COMPONENTS uc i18n)
find_package(nlohmann_json 3.10 REQUIRED)
find_package(fmt REQUIRED)
find_package(CLI11 REQUIRED)
find_package(OpenSSL 3 REQUIRED COMPONENTS Crypto)
find_package(PkgConfig REQUIRED)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET libplist-2.0)
