# Completion of zrconvert for bash.

_zrconvert() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command=${COMP_WORDS[1]}
  local -A options=(
    [convert]='-f --format -s --size -t --to -c --container -p --pattern -m --matrix --packing -d --demosaic -r --region --flip
               --flip-vertical --flip-horizontal --src-padding --stride --header-bytes --ignore-rest --no-clobber
               --png-level --auto --black --white --white-balance --gain --color-matrix --gamma --curve --offset --skip --frames
               -j --threads -q --quiet -h --help'
    [chart]='-f --format -s --size -p --pattern -m --matrix --packing --padding --stride --frames --no-clobber -h --help'
    [info]='-f --format -s --size --measure --histogram -p --pattern -m --matrix --packing -h --help'
    [formats]='--names --json -h --help'
    [pairs]='-h --help'
  )
  COMPREPLY=()
  _zrconvert_words() { mapfile -t COMPREPLY < <(compgen -W "$1" -- "$word"); }
  # The tool takes names in any case, so their beginnings are completed in any case.
  _zrconvert_formats() {
    mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" formats --names 2>/dev/null |
      awk -v word="$word" 'index(tolower($0), tolower(word)) == 1')
  }

  if [ "$COMP_CWORD" -eq 1 ]; then
    _zrconvert_words "convert chart info formats pairs --info -h --help -V --version"
    return
  fi
  case $previous in
    -f | --format | -t | --to) _zrconvert_formats ;;
    -s | --size) _zrconvert_words '640x480 1280x720 1280x1024 1920x1080 2048x1536 2448x2048 3840x2160 4096x3000' ;;
    -c | --container) _zrconvert_words 'bmp png pgm ppm pnm raw' ;;
    -p | --pattern) _zrconvert_words 'GRBG GBRG RGGB BGGR RGBG BGRG GRGB GBGR WGWR WBWG WRWG WGWB' ;;
    -m | --matrix) _zrconvert_words '601 709 jpeg' ;;
    --packing) _zrconvert_words 'type gige-vision csi2' ;;
    --curve) _zrconvert_words 'srgb linear' ;;
    -d | --demosaic) _zrconvert_words 'directional interpolate fast' ;;
    --png-level) _zrconvert_words '0 1 2 3 4 5 6 7 8 9' ;;
    -r | --region | --src-padding | --padding | --stride | --header-bytes | --black | --white | --white-balance | --gain | --color-matrix | --gamma | --offset | --skip | \
      --frames | -j | --threads) ;;
    *)
      if [[ $word == -* ]]; then
        _zrconvert_words "${options[$command]}"
      elif [ "$command" = pairs ]; then
        _zrconvert_formats
      else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
      fi
      ;;
  esac
}

complete -F _zrconvert zrconvert
