# Completes pithwise in bash.

_pithwise() {
  local word=$2 previous=$3 command=${COMP_WORDS[1]}
  case $previous in
    --mode) mapfile -t COMPREPLY < <(compgen -W "bullets executive tldr actions" -- "$word"); return ;;
    --length) mapfile -t COMPREPLY < <(compgen -W "brief balanced detailed" -- "$word"); return ;;
    --capture) mapfile -t COMPREPLY < <(compgen -W "window screen selection" -- "$word"); return ;;
    --model) compopt -o default; return ;;
  esac
  local words
  if ((COMP_CWORD == 1)); then
    words="summarize read plan hotkey toggle model --model --help --version"
  else
    case $command in
      summarize) words="--mode --length --capture --selection --clipboard --model --copy --help" ;;
      read) words="--capture --selection --clipboard --help" ;;
      plan) words="--mode --length --capture --selection --clipboard --help" ;;
      hotkey) words="--note --copy --model --help" ;;
      model) words="status path download --help" ;;
      *) words="--help" ;;
    esac
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  case $command in
    summarize | read | plan) compopt -o default ;; # files
  esac
}
complete -F _pithwise pithwise
