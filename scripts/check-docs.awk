# Reads the runs of a document: fences "console" with lines "$ command" (a line "> more" goes on with
# the command above it) and what the command prints, and fences with two words, "xml site.xml", which
# hold a file that the commands below them find. A fence "sh by-hand" is listed and not run; commands
# in any other fence are an error: what begins with "$ " or with a word by which commands begin here.
#   awk -v mode=split -v steps=FOLDER ...  writes each step into FOLDER: N.command, N.expected, N.line
#   awk -v mode=print -v steps=FOLDER ...  prints the document; a step with N.differs as it was run

function part(suffix) { return steps "/" step suffix }

function complain(text) {
  printf "%s:%d: %s\n", FILENAME, FNR, text > "/dev/stderr"
  status = 1
}

# Words that begin a command: a program's name, or a path of the sources with a name behind it.
function is_command(line) {
  return line ~ /^\$ / ||
         line ~ /^(sudo|apt|apt-get|cmake|ctest|ninja|make|cc|c\+\+|g\+\+|git|cd|cp|mv|rm|ln|ls|cat|grep|diff|jq|mkdir|export|holstd)( |$)/ ||
         line ~ /^(\.|\.ci|build|scripts)\/[a-z]/
}

function begin_step() {
  end_step()
  step++
  is_open = 1
  has_output = 0
  last_blank = 0
  if (mode != "split") return
  print FNR > part(".line")
  printf "" > part(".expected")
}

# In print mode: what a step printed in place of what the document said.
function end_step(  line, differs) {
  if (!is_open) return
  is_open = 0
  if (mode == "split") {
    close(part(".command")); close(part(".expected")); close(part(".line")); close(part(".file"))
    return
  }
  if ((getline differs < part(".differs")) >= 0) {
    while ((getline line < part(".output")) > 0) print line
    if (last_blank) print ""
  }
  close(part(".differs")); close(part(".output"))
}

function is_replaced(  differs, found) {
  found = (getline differs < part(".differs")) >= 0
  close(part(".differs"))
  return found
}

BEGIN {
  unrun = "commands that nobody runs; make it a \"console\" block, or \"sh by-hand\" where they cannot be run"
}

/^ *~~~/ { complain("a fence of ~~~; write ```") }

/^ +```(console|sh|bash|shell)/ {
  complain("a block of commands that is indented and so not run")
}

/^```/ {
  if (fence != "") {
    end_step()
    fence = ""
  } else {
    words = split(substr($0, 4), word, " ")
    fence = words == 0 ? "text" : word[1]
    if (words == 2 && word[2] == "by-hand") {
      fence = "by-hand"
      if (word[1] != "sh") complain("\"by-hand\" stands after \"sh\" only")
      if (mode == "split") printf "%s:%d: by hand, not run here\n", FILENAME, FNR > "/dev/stderr"
    } else if (words == 2) {
      fence = "file"
      begin_step()
      if (mode == "split") {
        printf "install -D -m 644 '%s' '%s'\n", part(".file"), word[2] > part(".command")
        printf "" > part(".file")
      }
    }
    if (fence ~ /^(sh|bash|shell)$/) complain(unrun)
  }
  if (mode == "print") print
  next
}

fence == "file" {
  if (mode == "split") print > part(".file")
  else print
  next
}

fence != "console" {
  if (fence != "" && fence != "by-hand" && is_command($0)) complain(unrun)
  if (mode == "print") print
  next
}

/^\$ / { begin_step() }

/^\$ / || (/^> / && is_open && !has_output) {
  if (mode == "split") print substr($0, 3) > part(".command")
  else print
  next
}

{
  if (!is_open) {
    complain("a console block begins with \"$ command\"")
    next
  }
  has_output = 1
  last_blank = $0 == ""
  if (mode == "split") print > part(".expected")
  else if (!is_replaced()) print
}

END { exit status }
