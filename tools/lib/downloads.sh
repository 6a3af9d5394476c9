# Runs what fetches something from the network, and says what to do when that fails: most of the time a proxy or a
# certificate is missing.
# shellcheck shell=bash

# download WHAT KIND LOG COMMAND…: KIND is apt or npm. WHAT names for a reader what is fetched.
download() {
    local what=$1 kind=$2 log=$3
    shift 3
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 && return 0
    {
        printf 'error: %s could not be downloaded\n' "$what"
        printf '       tried: %s\n' "$*"
        printf '%s' "$(download_sources "$kind" "$@")" | sed 's/^/       from:  /; s/ *$/\n/'
        printf '       proxy: %s\n' "$(proxies)"
        what_was_said "$log"
        download_advice "$kind" "$log"
    } >&2
    exit 1
}

# Where the program looks, on one line; nothing when it cannot be known (apt without any list).
download_sources() {
    local kind=$1 sources=
    shift
    if [ "$kind" = npm ]; then
        sources=$(npm config get registry 2>/dev/null || true)
    else
        local options=()
        while [ "$#" -gt 0 ]; do
            [ "$1" = -o ] && options+=(-o "$2")
            shift
        done
        # shellcheck disable=SC2016
        sources=$(apt-get "${options[@]}" indextargets --format '$(SITE)' 2>/dev/null | sort -u | tr '\n' ' ' || true)
    fi
    printf '%s' "$sources" | without_passwords
}

proxies() {
    local name found=()
    for name in http_proxy https_proxy HTTP_PROXY HTTPS_PROXY; do
        [ -n "${!name:-}" ] && found+=("$name=${!name}")
    done
    printf '%s' "${found[*]:-none is set (http_proxy, https_proxy)}" | without_passwords
}

without_passwords() { sed 's#\(://\)[^/@ ]*@#\1...@#g'; }

what_was_said() {
    if grep -q '[^[:space:]]' "$1"; then
        printf '       It said:\n'
        grep '[^[:space:]]' "$1" | tail -n 20 | without_passwords | sed 's/^/         /'
        printf '       The whole output is in %s\n' "$1"
    else
        printf '       It said nothing.\n'
    fi
}

# What the output speaks of comes first.
download_advice() {
    local kind=$1 log=$2
    local certificate='certificat|self.signed|unable.to.(get|verify)|SSL|TLS'
    if grep -qiE "$certificate" "$log"; then
        certificate_advice "$kind"
        proxy_advice "$kind"
    else
        proxy_advice "$kind"
        certificate_advice "$kind"
    fi
}

proxy_advice() {
    cat <<'TEXT'
       Behind a proxy:
         export http_proxy=http://HOST:PORT https_proxy=http://HOST:PORT
TEXT
    case $1 in
        apt) printf '%s\n' "       or, for apt alone, in /etc/apt/apt.conf.d/90proxy:" \
            '         Acquire::http::Proxy "http://HOST:PORT"; Acquire::https::Proxy "http://HOST:PORT";' ;;
        npm) printf '%s\n' "       or, for npm alone:" "         npm config set https-proxy http://HOST:PORT" ;;
    esac
}

certificate_advice() {
    printf '%s\n' "       Where a proxy shows a certificate of its own (as root):" \
        "         cp PROXY.crt /usr/local/share/ca-certificates/ && update-ca-certificates"
    [ "$1" = apt ] || printf '%s\n' "       npm has a list of its own:" \
        "         export NODE_EXTRA_CA_CERTS=/usr/local/share/ca-certificates/PROXY.crt"
}

# sudo takes the proxy's variables away.
with_proxies() {
    local name kept=()
    for name in http_proxy https_proxy; do
        [ -n "${!name:-}" ] && kept+=("$name=${!name}")
    done
    as_root env "${kept[@]}" "$@"
}
