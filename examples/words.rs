// Prints the words of each line of standard input with part of speech and reading, over the C interface:
//   rustc words.rs -L native=PREFIX/lib && ./words < text
use std::ffi::CStr;
use std::os::raw::{c_char, c_int, c_uint, c_void};
use std::io::{self, BufRead, Write};
use std::{mem, process, ptr, slice};

#[repr(C)]
struct Failure { size: usize, code: c_int, text: [c_char; 2044] }

#[repr(C)]
struct Tokens {
    size: usize, text_count: usize, token_count: usize,
    first_of_text: *const u32, begin: *const u32, end: *const u32, word: *const u64, flags: *const u8,
    char_begin: *const u32, char_end: *const u32, utf16_begin: *const u32, utf16_end: *const u32,
    cost: *const i32, kind: *const u8,
    pos: *const u32, pos_fields: *const u32, conjugation_type: *const u32, conjugation_form: *const u32,
    base: *const u32, reading: *const u32, pronunciation: *const u32, normalized: *const u32,
    annotation: *const u32, additional: *const u32,
    string_count: usize, string_offsets: *const u32, string_bytes: *const u8, string_version: u64,
    connection_cost: *const u32, word_cost: *const u32, plain_text: *const u8, plain_text_bytes: usize,
}
const POS: c_uint = 0x1;
const READING: c_uint = 0x20;

#[link(name = "tavo")]
extern "C" {
    fn tavo_lexicon_open(path: *const c_char, options: *const c_void, failure: *mut Failure) -> *mut c_void;
    fn tavo_tokenizer_new(lexicon: *const c_void, options: *const c_void, failure: *mut Failure) -> *mut c_void;
    fn tavo_tokenize(tokenizer: *mut c_void, utf8: *const u8, bytes: usize, fields: c_uint, out: *mut Tokens,
                     failure: *mut Failure) -> c_int;
}

fn main() -> io::Result<()> {
    let mut failure = Failure { size: mem::size_of::<Failure>(), code: 0, text: [0; 2044] };
    let check = |fine: bool, failure: &Failure| {
        if !fine {
            eprintln!("{}", unsafe { CStr::from_ptr(failure.text.as_ptr()) }.to_string_lossy());
            process::exit(1);
        }
    };
    let lexicon = unsafe { tavo_lexicon_open(ptr::null(), ptr::null(), &mut failure) };
    check(!lexicon.is_null(), &failure);
    let tokenizer = unsafe { tavo_tokenizer_new(lexicon, ptr::null(), &mut failure) };
    check(!tokenizer.is_null(), &failure);
    let mut tokens: Tokens = unsafe { mem::zeroed() };
    tokens.size = mem::size_of::<Tokens>();

    let mut out = io::BufWriter::new(io::stdout().lock());
    for line in io::stdin().lock().split(b'\n') {
        let line = line?;
        let code = unsafe {
            tavo_tokenize(tokenizer, line.as_ptr(), line.len(), POS | READING, &mut tokens, &mut failure)
        };
        check(code == 0, &failure);
        let column = |values: *const u32, count: usize| unsafe { slice::from_raw_parts(values, count) };
        if tokens.token_count == 0 { continue; }
        let offsets = column(tokens.string_offsets, tokens.string_count + 1);
        let text = |number: u32| {
            let (from, to) = (offsets[number as usize] as usize, offsets[number as usize + 1] as usize);
            unsafe { slice::from_raw_parts(tokens.string_bytes.add(from), to - from) }
        };
        let (begin, end) = (column(tokens.begin, tokens.token_count), column(tokens.end, tokens.token_count));
        let (pos, reading) = (column(tokens.pos, tokens.token_count), column(tokens.reading, tokens.token_count));
        for i in 0..tokens.token_count {
            out.write_all(&line[begin[i] as usize..end[i] as usize])?;
            out.write_all(b"\t")?;
            out.write_all(text(pos[i]))?;
            out.write_all(b"\t")?;
            out.write_all(text(reading[i]))?;
            out.write_all(b"\n")?;
        }
    }
    Ok(())
}
