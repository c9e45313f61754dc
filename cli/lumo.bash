# Completion of the command lumo for bash. Commands and options are read from its help texts, names
# of databases, tables, attributes and the like from the server that the line or LUMO_URL names.

_lumo_help() { lumo "$@" --help 2>/dev/null; }

# What the line says of the server, for calls of our own. Words are no help: they break at colons.
_lumo_server() {
  local option quotes=\'\"
  _lumo_options=()
  for option in url server sandbox-file namespace ca-file ca-folder; do
    [[ $COMP_LINE =~ --$option[\ =$quotes]+([^\ $quotes]+) ]] && _lumo_options+=("--$option" "${BASH_REMATCH[1]}")
  done
  for option in sandbox ticket; do
    [[ "$COMP_LINE " == *" --$option "* ]] && _lumo_options+=("--$option")
  done
  [ ${#_lumo_options[@]} -gt 0 ] || [ -n "${LUMO_URL-}" ] ||
    [ -e "${XDG_CONFIG_HOME:-$HOME/.config}/lumo/servers.ini" ]
}

# Lines of CSV; nothing when the server is slow or wants a password.
_lumo_lines() {
  local _lumo_options
  _lumo_server || return 0
  timeout 2 lumo -q "$@" "${_lumo_options[@]}" --retries 0 --format csv --no-headings </dev/null 2>/dev/null
}

# Tables of names, one to a line: the first cell of each.
_lumo_names() {
  _lumo_lines "$@" | sed -e 's/^"\(\([^"]\|""\)*\)".*/\1/;t' -e 's/,.*//'
}

_lumo() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' places=() i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --url | --server | --namespace | --user | --domain | --password-file | --ca-file | --ca-folder | \
        --certificate | --key | --proxy | --proxy-user | --proxy-password-file | --timeout | --retries | \
        --sandbox-file | -t | --text | -w | --where | --match | --name | -a | --attribute | --low | --high | --long | \
        --sort | --limit | --columns | --folder | --subset | --depth | --from | --unit-system | --currency | \
        --ranges | --delimiter | --partition | --size | -j | --jobs | --chunk | -f | --format | -o | --output | \
        -e | --exporter | -p | --parameter | --port | --idle | --journal | --resume | --resend-after | \
        --undo)
        ((++i))
        [ "${COMP_WORDS[i]}" != = ] || ((++i))
        # A value that broke at colons goes on.
        while [[ ${COMP_WORDS[i + 1]-} == : || ${COMP_WORDS[i]} == : ]] && ((i + 1 < COMP_CWORD)); do ((++i)); done ;;
      -*) ;;
      *) if [ -z "$command" ]; then command=${COMP_WORDS[i]}; else places+=("${COMP_WORDS[i]//\\/}"); fi ;;
    esac
  done

  local IFS=$'\n' choices=''
  case $previous in
    -f | --format)
      choices=$(_lumo_help "$command" | sed -n '/--format/,/^  -/s/.*: //p' | sed 's/, \| or /\n/g') ;;
    --match) choices=$'overlap\nall' ;;
    --ranges) choices=$'text\nsplit\nmean' ;;
    -a | --attribute | --sort | --low | --high | --long) choices=$(_lumo_names attributes "${places[@]:0:2}") ;;
    --columns)
      choices=$(printf '%s\n' id guid folder name 'full name'; _lumo_names attributes "${places[@]:0:2}") ;;
    --from) choices=$(_lumo_names units "${places[0]-}") ;;
    --subset) choices=$(_lumo_names subsets "${places[@]:0:2}") ;;
    --folder)
      choices=$(_lumo_lines tree "${places[@]:0:2}" --depth 4 |
        sed -n -e 's/^[0-9]*,folder,,\([^,"]*\),.*/\1/p' -e 's/^[0-9]*,folder,\([^,"]*\),\([^,"]*\),.*/\1\/\2/p') ;;
    --unit-system) choices=$(_lumo_lines units "${places[0]-}" --systems | sed -n 's/^system,\([^,]*\),.*/\1/p') ;;
    --currency) choices=$(_lumo_lines units "${places[0]-}" --systems | sed -n 's/^currency,\([^,]*\),.*/\1/p') ;;
    -e | --exporter) choices=$(_lumo_names export "${places[@]:0:2}") ;;
    --password-file | --proxy-password-file | --ca-file | --certificate | --key | --sandbox-file | --partition | \
      -o | --output)
      compopt -o filenames
      COMPREPLY=($(compgen -f -- "$word"))
      return ;;
    *)
      if [[ $word == -* ]]; then
        choices=$({ _lumo_help; [ -z "$command" ] || _lumo_help "$command"; } |
          grep -oE -- '^ +(-[a-z], )?--[a-z-]+' | grep -oE -- '--[a-z-]+')
      elif [ -z "$command" ] || [ "$command" = help ]; then
        choices=$(_lumo_help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p')
      elif [ "$command" = import ] && [ ${#places[@]} -eq 2 ]; then
        compopt -o filenames
        COMPREPLY=($(compgen -f -- "$word"))
        return
      elif [ ${#places[@]} -eq 0 ]; then
        choices=$(_lumo_names databases)
      elif [ ${#places[@]} -eq 1 ]; then
        choices=$(_lumo_names tables "${places[0]}")
      else
        case $command in
          get | compare | links | export | partitions)
            choices=$(_lumo_names get "${places[@]:0:2}" --columns name --limit 1000) ;;
        esac
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
