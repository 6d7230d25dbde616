# shellcheck shell=bash
# Sourced after setup.sh by what builds libraries from the distribution's own source packages.

# use_debian_sources FOLDER: the packages come to FOLDER, with lists of our own: those of the system may leave the source
# packages out, and are not ours to change.
use_debian_sources() {
    sources_folder=$1
    mkdir -p "$sources_folder/apt/lists/partial"
    local keyring=/usr/share/keyrings/debian-archive-keyring.gpg options=
    [[ -e $keyring ]] && options="[signed-by=$keyring] "
    # The archive ahead of what mends it: a package that stands in the lists of both is fetched from where all of it is.
    apt-get indextargets 'Created-By: Packages' 'Origin: Debian' \
        --format "deb-src ${options}\$(REPO_URI) \$(RELEASE) \$(COMPONENT)" | sort -ru >"$sources_folder/apt/sources.list"
    sources_apt=(apt-get -qq -o Dir::Etc::sourcelist="$sources_folder/apt/sources.list" -o Dir::Etc::sourceparts=/dev/null
        -o Dir::State::lists="$sources_folder/apt/lists" -o APT::Sandbox::User="$(id -un)")
    "${sources_apt[@]}" update
}

# get_packed_source PACKAGE SOURCE gets the files of the source package of an installed package, in the version that is
# installed, and sets source_version.
get_packed_source() {
    source_version=$(dpkg-query -W -f='${source:Version}' "$1")
    say "getting the source package $2 $source_version"
    # Checked against the archive's signature by the download itself.
    (cd "$sources_folder" && "${sources_apt[@]}" source --download-only "$2=$source_version")
    source_version=${source_version#*:}
}

# get_source PACKAGE SOURCE unpacks it, too, into a folder of its name.
get_source() {
    get_packed_source "$@"
    rm -rf "${sources_folder:?}/$2"
    dpkg-source --no-check -x "$sources_folder/${2}_$source_version.dsc" "$sources_folder/$2"
}

# step NAME COMMAND...: a step of a library's building, whose last words show when it fails.
step() {
    local log=$sources_folder/$1.log
    shift
    "$@" >"$log" 2>&1 || { tail -n 40 "$log" && fail "A library does not build: $log"; }
}
