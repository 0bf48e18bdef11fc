. "$(dirname "$0")/harness.sh"
