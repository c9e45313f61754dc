# Completion of the command lumo for bash. Commands and options are read from its help texts, names
# of databases and tables from the server that LUMO_URL names, if it does.

_lumo_help() { lumo "$@" --help 2>/dev/null; }

# Tables of names, one to a line; nothing when the server is slow or wants a password.
_lumo_names() {
  [ -n "${LUMO_URL-}" ] || return 0
  timeout 2 lumo -q "$@" --format csv --no-headings </dev/null 2>/dev/null |
    sed -e 's/^"\(\([^"]\|""\)*\)".*/\1/;t' -e 's/,.*//'
}

_lumo() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' places=() i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --url | --namespace | --user | --domain | --password-file | --ca-file | --proxy | --timeout | --sandbox-file | \
        -t | --text | -w | --where | -n | --name | -a | --attribute | --folder | --subset | --depth | \
        --from | --unit-system | --currency | -j | --jobs | --chunk | -f | --format | -o | --output | \
        -e | --exporter | -p | --parameter | --port | --idle | --delimiter | --journal | --resume | \
        --undo)
        [ "$command" = import ] && [ "${COMP_WORDS[i]}" = -n ] || ((++i)) ;;
      -*) ;;
      *) if [ -z "$command" ]; then command=${COMP_WORDS[i]}; else places+=("${COMP_WORDS[i]}"); fi ;;
    esac
  done

  local IFS=$'\n' choices=''
  case $previous in
    -f | --format)
      choices=$'text\ncsv\njson\nndjson'
      [ "$command" != get ] || choices+=$'\nplot' ;;
    --password-file | --ca-file | --sandbox-file | -o | --output)
      compopt -o filenames
      COMPREPLY=($(compgen -f -- "$word"))
      return ;;
    *)
      if [[ $word == -* ]]; then
        choices=$({ _lumo_help; [ -z "$command" ] || _lumo_help "$command"; } |
          grep -oE -- '^ +(-[a-z], )?--[a-z-]+' | grep -oE -- '--[a-z-]+')
      elif [ -z "$command" ]; then
        choices=$(_lumo_help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
      elif [ "$command" = import ] && [ ${#places[@]} -eq 2 ]; then
        compopt -o filenames
        COMPREPLY=($(compgen -f -- "$word"))
        return
      elif [ ${#places[@]} -eq 0 ]; then
        choices=$(_lumo_names databases)
      elif [ ${#places[@]} -eq 1 ]; then
        choices=$(_lumo_names tables "${places[0]//\\/}")
      fi ;;
  esac
  # Names come from a server: they are never evaluated, only quoted.
  local choice plain=${word//\\/}
  COMPREPLY=()
  while IFS= read -r choice; do
    [ -n "$choice" ] && [[ $choice == "$plain"* ]] && COMPREPLY+=("$(printf %q "$choice")")
  done <<<"$choices"
}

complete -F _lumo lumo
