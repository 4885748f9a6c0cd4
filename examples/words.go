// Prints the words of each line of standard input with part of speech and reading, over the C interface:
//
//	CGO_CFLAGS="$(pkg-config --cflags tavo)" CGO_LDFLAGS="$(pkg-config --libs tavo)" go run words.go < text
package main

/*
#include <stdlib.h>
#include <tavo/tavo_text.h>
*/
import "C"

import (
	"bufio"
	"fmt"
	"log"
	"os"
	"unsafe"
)

func main() {
	var failure C.tavo_failure_t
	failure.size = C.size_t(unsafe.Sizeof(failure))
	check := func(fine bool) {
		if !fine {
			log.Fatal(C.GoString(&failure.text[0]))
		}
	}
	lexicon := C.tavo_lexicon_open(nil, nil, &failure)
	check(lexicon != nil)
	tokenizer := C.tavo_tokenizer_new(lexicon, nil, &failure)
	check(tokenizer != nil)
	tokens := (*C.tavo_tokens_t)(C.calloc(1, C.sizeof_tavo_tokens_t))
	tokens.size = C.sizeof_tavo_tokens_t

	out := bufio.NewWriter(os.Stdout)
	defer out.Flush()
	lines := bufio.NewScanner(os.Stdin)
	for lines.Scan() {
		line := lines.Text()
		bytes := C.CString(line)
		check(C.tavo_tokenize(tokenizer, bytes, C.size_t(len(line)), C.TAVO_POS|C.TAVO_READING, tokens, &failure) == 0)
		C.free(unsafe.Pointer(bytes))
		count := int(tokens.token_count)
		offsets := unsafe.Slice(tokens.string_offsets, int(tokens.string_count)+1)
		text := func(number C.uint32_t) string {
			from := unsafe.Add(unsafe.Pointer(tokens.string_bytes), int(offsets[number]))
			return C.GoStringN((*C.char)(from), C.int(offsets[number+1]-offsets[number]))
		}
		begin, end := unsafe.Slice(tokens.begin, count), unsafe.Slice(tokens.end, count)
		pos, reading := unsafe.Slice(tokens.pos, count), unsafe.Slice(tokens.reading, count)
		for i := range begin {
			fmt.Fprintf(out, "%s\t%s\t%s\n", line[begin[i]:end[i]], text(pos[i]), text(reading[i]))
		}
	}
	check(lines.Err() == nil)
}
