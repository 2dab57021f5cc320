# Makes a minimal root of the release that this machine runs; for scripts that source it.

# Of the machine's own packages: where they come from, and who signs them.
package_source() {
  apt-get indextargets --format '$(REPO_URI)|$(SIGNED_BY)|$(RELEASE)|$(COMPONENT)' 'Created-By: Packages' |
    awk -F'|' -v release="$release" '$3 == release && $4 == "main" { print; exit }'
}

# apt's own proxies, for the programs that look for them in their environment.
take_proxies() {
  local http='' https=''
  eval "$(apt-config shell http Acquire::http::Proxy https Acquire::https::Proxy)"
  if [ -n "$http" ] && [ "$http" != DIRECT ]; then export http_proxy=$http; fi
  if [ -n "$https" ] && [ "$https" != DIRECT ]; then export https_proxy=$https; fi
}

# bootstrap FOLDER ARCHITECTURE PACKAGES: nothing but these packages (parted by commas) and what they need.
bootstrap() {
  local folder=$1 architecture=$2 packages=$3 release mirror keyring log _
  log="${folder%.unfinished}.log"
  release=$(. /etc/os-release && echo "$VERSION_CODENAME")
  IFS='|' read -r mirror keyring _ < <(package_source) || true
  [ -n "${mirror:-}" ] || { echo "apt has no source of $release main" >&2; exit 1; }
  if [ ! -f "$keyring" ]; then keyring=/usr/share/keyrings/debian-archive-keyring.gpg; fi
  take_proxies
  rm -rf --one-file-system "$folder"
  echo "making ${folder%.unfinished}" >&2
  if ! debootstrap --arch="$architecture" --variant=minbase --keyring="$keyring" --include="$packages" \
    "$release" "$folder" "$mirror" >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    exit 1
  fi
  rm -rf "$folder"/var/cache/apt/archives/*.deb "$folder"/var/lib/apt/lists/*
}
