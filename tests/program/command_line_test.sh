#!/usr/bin/env bash
# Each bad command line is told with its exact text and ends with 0; good ones open the window.
. "$(dirname "$0")/harness.sh"

usage='Usage:
-t "Window Title"
-f "XML File Name"'

# refused <message> <argument> ...
refused() {
    local message=$1 box
    shift
    start "$@"
    box=$(window '^Zandrel Dialog$')
    expect "$(text_of "$box")" "$message
$usage"
    confirm "$box"
    ends_with 0
}
refused "Missing value for command line argument '-t'." -t
refused "Missing value for command line argument '/f'." /f
refused "Invalid command line argument '-x'." -x y
refused "Invalid command line argument 'b'." -f a b -t c
refused "Invalid command line argument '<b>x</b>'." '<b>x</b>' y

# opens <title> <argument> ...
opens() {
    local title=$1
    shift
    start "$@"
    close_window "$(window "^$title$")"
    ends_with 0
}
make_server
opens 'My title' /t 'My title' -f "$file"
opens '-f' -t -f -f "$file"
opens "Zandrel - $file" -t '' -f "$file"
opens "Zandrel - $file" -F x -f "$file"

# Without a file name, and with an empty one, it is ServerConfig.xml beside the executable.
folder=$(dirname "$console")
for arguments in '' '-f'; do
    start $arguments ${arguments:+""}
    box=$(window '^Configuration File Not Found$')
    expect "$(text_of "$box")" "The configuration file 'ServerConfig.xml' could not be opened.
Please check if it exists!"
    confirm "$box"
    close_window "$(window "^Zandrel - $folder/ServerConfig.xml$")"
    ends_with 0
done
